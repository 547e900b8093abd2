// SPDX-License-Identifier: MIT
// What the tests of the custom data container share: its rules, one after the other and without
// regard to speed, and its block as bytes.
#pragma once

#include "kortools/data/custom_data.h"
#include "tests/archive/archive_encoder.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kor_test {

// "TIME" => 0x54494D45
constexpr unsigned four(char const (&text)[5])
{
    unsigned code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

struct ModelEntry {
    unsigned id;
    unsigned kind;
    std::string bytes;
};

inline std::string encode_entry(unsigned id, unsigned kind, std::string_view bytes)
{
    return ArchiveEncoder()
        .u32(id)
        .u32(static_cast<unsigned>(bytes.size()))
        .u32(kind)
        .raw(bytes)
        .bytes();
}

class CustomDataModel {
public:
    std::vector<ModelEntry> entries;

    ModelEntry *find(unsigned id)
    {
        auto const found = std::ranges::find(entries, id, &ModelEntry::id);
        return found != entries.end() ? &*found : nullptr;
    }
    void set(unsigned id, unsigned kind, std::string const &bytes)
    {
        if (ModelEntry *const old = find(id); old && old->bytes.size() == bytes.size()) {
            *old = { id, kind, bytes };
            return;
        }
        remove(id);
        if (!bytes.empty())
            entries.push_back({ id, kind, bytes });
    }
    void remove(unsigned id)
    {
        std::erase_if(entries, [&](ModelEntry const &entry) { return entry.id == id; });
    }
    bool change(unsigned from, unsigned to)
    {
        if (!find(from))
            return false;
        if (from != to)
            remove(to);
        find(from)->id = to;
        return true;
    }
    std::string block() const
    {
        std::string all;
        for (ModelEntry const &entry : entries)
            all += encode_entry(entry.id, entry.kind, entry.bytes);
        return all;
    }
};

inline std::string block_of(CCustomData const &data)
{
    unsigned size = 0;
    auto const *const block = static_cast<char const *>(data.GetData(size));
    return block ? std::string(block, size) : std::string();
}

inline bool set_block(CCustomData &data, std::string_view block)
{
    return data.SetData(block.data(), static_cast<unsigned>(block.size()));
}

inline CStringList string_list(std::initializer_list<wchar_t const *> texts)
{
    CStringList list;
    for (wchar_t const *text : texts)
        list.AddTail(text);
    return list;
}

// The one way in and out, for kinds of every sort.
class OpenCustomData : public CCustomData {
public:
    using CCustomData::GetCustom;
    using CCustomData::SetCustom;
    void set(unsigned id, unsigned kind, std::string_view bytes)
    {
        SetCustom(id, bytes.data(), static_cast<unsigned>(bytes.size()), kind);
    }
};

} // namespace kor_test
