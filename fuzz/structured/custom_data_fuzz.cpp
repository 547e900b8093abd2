// SPDX-License-Identifier: MIT
// Bytes as a stream and as a block of custom data, what every getter makes of the entries, and
// whether what was read is written back the same.
#include "kortools/data/custom_data.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void get_numbers(CCustomData const &data, unsigned id)
{
    int number;
    bool flag;
    double value;
    char bytes[8];
    void *pointer = nullptr;
    data.GetInt(id, number);
    data.GetBool(id, flag);
    data.GetDouble(id, value);
    data.GetBinary(id, bytes, sizeof bytes);
    data.GetPtr(id, pointer);
    CXTime time;
    data.GetXTime(id, time);
    data.GetUTCTime(id, time);
}

void get_others(CCustomData const &data, unsigned id)
{
    CXTString<wchar_t> text;
    CXTString<char> narrow;
    CCustomData::StringArray texts;
    CStringList list;
    data.GetString(id, text);
    data.GetStringA(id, narrow);
    check(data.GetStringArray(id, texts) == data.GetStringList(id, list));
    for (unsigned size = 0; size < 5; ++size) {
        unsigned count = 0;
        auto const *const elements = static_cast<char const *>(data.GetArray(id, count, size));
        char volatile touched = elements && size * count != 0 ? elements[size * count - 1] : 0;
        static_cast<void>(touched);
    }
    data.GetChecksum(id);
    CCustomData inner;
    if (!data.GetCustomData(id, inner))
        check(!inner.HasData());
}

void use(CCustomData &data)
{
    unsigned kind;
    unsigned const count = data.GetIDCount() < 64 ? data.GetIDCount() : 64;
    for (unsigned i = 0; i < count; ++i) {
        unsigned const id = data.GetIDByIndex(i, kind);
        check(data.HasData(id));
        get_numbers(data, id);
        get_others(data, id);
    }
    data.DumpCustomData();
    unsigned long long size = 0;
    void *const stream = data.SerializeToData(size);
    CCustomData again;
    check(again.SerializeFromData(stream, size) && again.IsEqual(data));
    CCustomData::Free(stream);
    for (unsigned i = 0; i < count && data.HasData(); ++i) {
        unsigned const id = data.GetIDByIndex(data.GetIDCount() / 2, kind);
        if (i % 3 == 0)
            data.ChangeID(id, i);
        else if (i % 3 == 1)
            data.SetInt(id, 1);
        else
            data.RemoveCustom(id);
        if (i % 3 == 2)
            check(!data.HasData(id));
    }
    again.Copy(&data, CCustomData::copyMerge);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    CCustomData data;
    if (data.SerializeFromData(bytes, size))
        use(data);
    else
        check(!data.HasData());
    CCustomData block;
    if (block.SetData(bytes, static_cast<unsigned>(size)))
        use(block);
    else
        check(!block.HasData());
    return 0;
}
