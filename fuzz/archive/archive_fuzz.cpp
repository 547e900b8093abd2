// SPDX-License-Identifier: MIT
// Reads archives from arbitrary bytes. The first two bytes choose the file and its window, the next
// ones are a script that says what to read, up to a zero; the rest is the archive.
//
// Nothing may crash, leak or take memory out of proportion; what can be read must be the same again
// after it is written and read once more.
#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "tests/archive/stream_file.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

// Every object alive, since what was read has no owner.
class FuzzObject : public CXObject {
    KOR_DECLARE_CLASS(FuzzObject)
public:
    FuzzObject() { s_alive.insert(this); }
    FuzzObject(FuzzObject const &) = delete;
    FuzzObject &operator=(FuzzObject const &) = delete;
    ~FuzzObject() override { s_alive.erase(this); }

    static inline std::unordered_set<FuzzObject *> s_alive;
};
KOR_IMPLEMENT_ABSTRACT_CLASS(FuzzObject, CXObject, 1)

class FuzzText : public FuzzObject {
    KOR_DECLARE_CLASS(FuzzText)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring())
            archive << m_wide << m_narrow << m_flag << m_number;
        else
            archive >> m_wide >> m_narrow >> m_flag >> m_number;
    }

private:
    CXTString<wchar_t> m_wide;
    CXTString<char> m_narrow;
    bool m_flag = false;
    double m_number = 0;
};
KOR_IMPLEMENT_CLASS(FuzzText, FuzzObject, 2)

class FuzzNode : public FuzzObject {
    KOR_DECLARE_CLASS(FuzzNode)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring()) {
            archive << m_text << m_any;
            archive.WriteCount(m_nodes.size());
            for (FuzzNode const *const node : m_nodes)
                archive << node;
            return;
        }
        archive >> m_text >> m_any;
        auto const count = archive.ReadCount();
        m_nodes.reserve(static_cast<std::size_t>(archive.EnsureAvailable(count, 2)));
        while (m_nodes.size() < count)
            archive >> m_nodes.emplace_back();
    }

private:
    FuzzText *m_text = nullptr;
    CXObject const *m_any = nullptr;
    std::vector<FuzzNode *> m_nodes;
};
KOR_IMPLEMENT_CLASS(FuzzNode, FuzzObject, 3)

class FuzzVersioned : public FuzzNode {
    KOR_DECLARE_CLASS(FuzzVersioned)
};
KOR_IMPLEMENT_CLASS(FuzzVersioned, FuzzNode, 4 | CXRuntimeClass::versionable_schema)

class FuzzTransient : public FuzzObject {
    KOR_DECLARE_CLASS(FuzzTransient)
};
KOR_IMPLEMENT_CLASS(FuzzTransient, FuzzObject, 1 | CXRuntimeClass::not_serializable)

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::string store(CXObject const *object)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    archive << object;
    archive.Close();
    return { reinterpret_cast<char const *>(file.GetBuffer()),
        static_cast<std::size_t>(file.GetLength()) };
}

void check_round_trip(CXObject const *object)
{
    std::string const once = store(object);
    CXMemFile file(reinterpret_cast<unsigned char const *>(once.data()), once.size());
    CXArchive archive(&file, CXArchive::load, 200);
    require(store(archive.ReadObject(nullptr)) == once);
    require(archive.GetBytesLeft() == 0);
}

template <class T> void read_value(CXArchive &archive)
{
    T value {};
    archive >> value;
}

void read_array(CXArchive &archive)
{
    auto const count = static_cast<std::size_t>(archive.ReadCount());
    std::vector<int> values;
    while (values.size() < count) {
        std::size_t const done = values.size();
        auto const part = static_cast<std::size_t>(archive.EnsureAvailable(count - done, 4));
        values.resize(done + part);
        archive.ReadValues(values.data() + done, part);
    }
}

void run_command(CXArchive &archive, unsigned command)
{
    unsigned int schema = 0;
    unsigned int tag = 0;
    xStringEncoding encoding;
    char block[300];
    switch (command % 16) {
    case 1:
        return check_round_trip(archive.ReadObject(nullptr));
    case 2:
        return check_round_trip(archive.ReadObject(FuzzNode::GetThisRuntimeClassDescriptor()));
    case 3:
        archive.ReadClass(nullptr, &schema, &tag);
        return;
    case 4:
        return archive.SerializeClass(FuzzObject::GetThisRuntimeClassDescriptor());
    case 5:
        return read_value<CXTString<wchar_t>>(archive);
    case 6:
        return read_value<CXTString<char>>(archive);
    case 7:
        archive.ReadStringLength(encoding);
        return;
    case 8:
        return read_array(archive);
    case 9:
        return read_value<bool>(archive);
    case 10:
        return read_value<short>(archive);
    case 11:
        return read_value<int>(archive);
    case 12:
        return read_value<double>(archive);
    case 13:
        archive.Read(block, command);
        return;
    case 14:
        return archive.Flush();
    default:
        return read_value<wchar_t>(archive);
    }
}

void run_script(CXArchive &archive, std::string_view script)
{
    std::size_t orphans = 0;
    try {
        for (char const command : script)
            run_command(archive, static_cast<unsigned char>(command));
    } catch (CXArchiveException *exception) {
        exception->Delete();
        orphans = archive.GetOrphanCount();
    }
    std::size_t const alive = FuzzObject::s_alive.size();
    archive.DeleteOrphans();
    require(FuzzObject::s_alive.size() == alive - orphans);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    if (size < 3)
        return 0;
    std::uint8_t const *const script = data + 2;
    auto const *const end = static_cast<std::uint8_t const *>(std::memchr(script, 0, size - 2));
    if (!end)
        return 0;
    std::uint8_t const *const bytes = end + 1;
    auto const length = static_cast<std::size_t>(data + size - bytes);
    CXMemFile memory(bytes, length);
    kor_test::StreamFile steps(
        { reinterpret_cast<char const *>(bytes), length }, data[0] / 4 + 1U, (data[0] & 2) != 0);
    CXFile *const file = (data[0] & 1) != 0 ? &memory : &steps;
    {
        CXArchive archive(file, CXArchive::load, data[1] * 16U);
        run_script(archive,
            { reinterpret_cast<char const *>(script), static_cast<std::size_t>(end - script) });
    }
    while (!FuzzObject::s_alive.empty())
        delete *FuzzObject::s_alive.begin();
    return 0;
}
