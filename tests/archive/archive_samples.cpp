// SPDX-License-Identifier: MIT
#include "tests/archive/archive_samples.h"

#include "tests/support/oracle.h"

#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "kortools/platform/code_pages.h"

#include <bit>
#include <memory>

// A named shape that knows its parent: references up and down.
class SampleShape : public CXObject {
    KOR_DECLARE_CLASS(SampleShape)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring()) {
            archive << m_name << m_size << m_parent;
            archive.WriteCount(m_parts.size());
            for (auto const *const part : m_parts)
                archive << part;
            return;
        }
        archive >> m_name >> m_size >> m_parent;
        for (auto count = archive.ReadCount(); count != 0; --count)
            archive >> m_parts.emplace_back();
    }

    CXTString<wchar_t> m_name;
    double m_size = 0;
    SampleShape *m_parent = nullptr;
    std::vector<SampleShape *> m_parts;
};
KOR_IMPLEMENT_CLASS(SampleShape, CXObject, 4)

class SampleGroup : public SampleShape {
    KOR_DECLARE_CLASS(SampleGroup)
};
KOR_IMPLEMENT_CLASS(SampleGroup, SampleShape, 9 | CXRuntimeClass::versionable_schema)

class SampleMark : public CXObject {
    KOR_DECLARE_CLASS(SampleMark)
};
KOR_IMPLEMENT_CLASS(SampleMark, CXObject, 1)

namespace kor_test {
namespace {

// --- values

void write_values(CXArchive &archive)
{
    archive << false << true << 'k' << static_cast<unsigned char>(0xEF) << static_cast<short>(-300)
            << static_cast<unsigned short>(0xFFFE) << -70000 << 0xDEADBEEFU << -5'000'000'000LL
            << 0xFEDCBA9876543210ULL << 0.1F << -1e-310
            << std::bit_cast<double>(0x7FF8000000000BADULL) << L'\u20AC';
    for (unsigned long long const count :
        { 0ULL, 65534ULL, 65535ULL, 4294967294ULL, 4294967295ULL })
        archive.WriteCount(count);
}

template <class... Values> bool reads(CXArchive &archive, Values const &...expected)
{
    auto const reads_one = [&](auto const &value) {
        std::remove_cvref_t<decltype(value)> loaded {};
        archive >> loaded;
        return std::memcmp(&loaded, &value, sizeof loaded) == 0;
    };
    return (reads_one(expected) && ...);
}

bool read_values(CXArchive &archive)
{
    bool equal = reads(archive, false, true, 'k', static_cast<unsigned char>(0xEF),
        static_cast<short>(-300), static_cast<unsigned short>(0xFFFE), -70000, 0xDEADBEEFU,
        -5'000'000'000LL, 0xFEDCBA9876543210ULL, 0.1F, -1e-310,
        std::bit_cast<double>(0x7FF8000000000BADULL), L'\u20AC');
    for (unsigned long long const count :
        { 0ULL, 65534ULL, 65535ULL, 4294967294ULL, 4294967295ULL })
        equal = archive.ReadCount() == count && equal;
    return equal;
}

// --- strings: every one wide, and the byte strings of the same lengths

std::vector<std::u16string> const &get_texts()
{
    static std::vector<std::u16string> const texts { u"", u"plain", u"\xE9t\xE9 \x20AC",
        u"\xD83D\xDE00 pair", u"\xDE00 low alone, high alone \xD83D",
        std::u16string(u"zero\0in it", 10), std::u16string(254, u'a'), std::u16string(255, u'b'),
        std::u16string(5000, u'c') };
    return texts;
}

void write_strings(CXArchive &archive)
{
    for (auto const &units : get_texts()) {
        std::wstring const text = to_wide(units);
        std::string const bytes(units.size(), '\xE9');
        archive << CXTString<wchar_t>(text.data(), static_cast<int>(text.size()))
                << CXTString<char>(bytes.data(), static_cast<int>(bytes.size()));
    }
    archive.WriteStringLength(3, xEncodingUTF8);
    archive.Write("\xE2\x82\xAC", 3);
    archive.WriteStringLength(3, xEncodingMarked);
    archive.Write("???", 3);
    archive << CXTString<char>("\x80") << CXTString<char>('n', 65532);
}

bool read_strings(CXArchive &archive)
{
    bool equal = true;
    CXTString<wchar_t> wide;
    CXTString<char> narrow;
    for (auto const &units : get_texts()) {
        archive >> wide >> narrow;
        equal = equal && wide == to_wide(units.substr(0, units.find(u'\0'))).c_str()
            && narrow == std::string(units.size(), '\xE9').c_str();
    }
    for (int euro = 0; euro < 3; ++euro) { // UTF-8, not converted, and the ANSI page's
        archive >> wide;
        equal = equal && wide == L"\u20AC";
    }
    archive >> narrow;
    return equal && narrow == CXTString<char>('n', 65532);
}

// --- arrays

void write_arrays(CXArchive &archive)
{
    archive.WriteCount(70000);
    for (int i = 0; i < 70000; ++i)
        archive << static_cast<unsigned char>(i * 7);
    archive.WriteCount(100);
    for (int i = 0; i < 100; ++i)
        archive << i * 0.25;
}

bool read_arrays(CXArchive &archive)
{
    std::vector<unsigned char> bytes(static_cast<std::size_t>(archive.ReadCount()));
    archive.ReadValues(bytes.data(), bytes.size());
    bool equal = bytes.size() == 70000;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        equal = equal && bytes[i] == static_cast<unsigned char>(i * 7);
    std::vector<double> doubles(static_cast<std::size_t>(archive.ReadCount()));
    archive.ReadValues(doubles.data(), doubles.size());
    for (std::size_t i = 0; i < doubles.size(); ++i)
        equal = equal && doubles[i] == static_cast<double>(i) * 0.25;
    return equal && doubles.size() == 100;
}

// --- a graph: groups and shapes that share parts and refer to their parents

void write_graph(CXArchive &archive)
{
    SampleGroup scene;
    SampleGroup groups[3];
    SampleShape shapes[4];
    scene.m_name = L"scene";
    for (int i = 0; i < 3; ++i) {
        groups[i].m_name.Format(L"group %d", i);
        groups[i].m_parent = &scene;
        groups[i].m_parts = { &shapes[i], nullptr, &shapes[i + 1] };
        scene.m_parts.push_back(&groups[i]);
    }
    for (int i = 0; i < 4; ++i) {
        shapes[i].m_size = i + 0.5;
        shapes[i].m_parent = &groups[i % 3];
    }
    archive << &scene << &shapes[3];
    archive.WriteClass(SampleMark::GetThisRuntimeClassDescriptor());
}

bool read_graph(CXArchive &archive)
{
    SampleGroup *scene = nullptr;
    SampleShape *last = nullptr;
    archive >> scene >> last;
    archive.SerializeClass(SampleMark::GetThisRuntimeClassDescriptor());
    bool equal = scene && scene->m_name == L"scene" && scene->m_parts.size() == 3;
    std::vector<std::unique_ptr<CXObject>> owned;
    owned.emplace_back(scene);
    owned.emplace_back(last);
    for (std::size_t i = 0; equal && i < 3; ++i) {
        SampleShape const *const group = scene->m_parts[i];
        equal = group->m_parent == scene && group->m_parts.size() == 3 && !group->m_parts[1]
            && group->m_parts[0]->m_size == static_cast<double>(i) + 0.5
            && group->m_parts[0]->m_parent == group
            && (i == 0 || group->m_parts[0] == scene->m_parts[i - 1]->m_parts[2]);
        owned.emplace_back(scene->m_parts[i]);
        owned.emplace_back(group->m_parts[0]);
    }
    return equal && last == scene->m_parts[2]->m_parts[2] && last->m_parent == scene->m_parts[0];
}

// --- more objects than two bytes can number

constexpr int many = 33000;

void write_many(CXArchive &archive)
{
    std::vector<SampleMark> marks(many);
    SampleShape late[2];
    for (auto const &mark : marks)
        archive << &mark;
    for (int i = 0; i < many; i += 1000)
        archive << &marks[static_cast<std::size_t>(i)];
    archive << &late[0] << &late[1] << &late[0];
}

bool read_many(CXArchive &archive)
{
    std::vector<std::unique_ptr<CXObject>> owned;
    for (int i = 0; i < many; ++i)
        owned.emplace_back(archive.ReadObject(SampleMark::GetThisRuntimeClassDescriptor()));
    bool equal = true;
    for (std::size_t i = 0; i < many; i += 1000)
        equal = archive.ReadObject(nullptr) == owned[i].get() && equal;
    SampleShape *late[2] = {};
    archive >> late[0] >> late[1];
    owned.emplace_back(late[0]);
    owned.emplace_back(late[1]);
    return archive.ReadObject(nullptr) == late[0] && equal;
}

std::string read_as_values(ArchiveSample const &sample, std::string const &bytes)
{
    CXMemFile file(reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size());
    CXArchive archive(&file, CXArchive::load);
    try {
        if (!sample.m_read(archive))
            return "reads as other values";
        return archive.GetBytesLeft() == 0 ? "" : "has more than was written";
    } catch (CXArchiveException *exception) {
        auto const cause = std::to_string(exception->GetCause());
        exception->Delete();
        return "fails with cause " + cause;
    }
}

} // namespace

std::vector<ArchiveSample> const &get_archive_samples()
{
    static std::vector<ArchiveSample> const samples {
        { "values", write_values, read_values },
        { "strings", write_strings, read_strings },
        { "arrays", write_arrays, read_arrays },
        { "graph", write_graph, read_graph },
        { "many", write_many, read_many },
    };
    return samples;
}

std::string write_sample(ArchiveSample const &sample)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    sample.m_write(archive);
    archive.Close();
    return { reinterpret_cast<char const *>(file.GetBuffer()),
        static_cast<std::size_t>(file.GetLength()) };
}

std::string check_sample(ArchiveSample const &sample, std::string const &bytes)
{
    kortools::platform::set_ansi_code_page(1252); // of the unmarked text
    std::string const wrong = read_as_values(sample, bytes);
    kortools::platform::set_ansi_code_page(0);
    if (!wrong.empty())
        return wrong;
    std::string const own = write_sample(sample);
    auto const [at, own_at] = std::mismatch(bytes.begin(), bytes.end(), own.begin(), own.end());
    if (at == bytes.end() && own_at == own.end())
        return "";
    return "differs from this build's at byte " + std::to_string(at - bytes.begin());
}

} // namespace kor_test
