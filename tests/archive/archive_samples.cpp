// SPDX-License-Identifier: MIT
#include "tests/archive/archive_samples.h"

#include "tests/archive/archive_support.h"
#include "tests/support/ansi_page.h"
#include "tests/support/oracle.h"

#include <bit>
#include <memory>

// A shape that knows its parts, which others may share, and its parent.
class SampleShape : public CXObject {
    KOR_DECLARE_CLASS(SampleShape)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring()) {
            archive << m_name << m_size << m_parent << m_parts[0] << m_parts[1];
            return;
        }
        s_loaded.emplace_back(this);
        archive >> m_name >> m_size >> m_parent >> m_parts[0] >> m_parts[1];
    }

    static inline std::vector<std::unique_ptr<CXObject>> s_loaded;
    CXTString<wchar_t> m_name;
    double m_size = 0;
    SampleShape *m_parent = nullptr;
    SampleShape *m_parts[2] = {};
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

bool exchange_count(CXArchive &archive, unsigned long long count)
{
    if (archive.IsLoading())
        return archive.ReadCount() == count;
    archive.WriteCount(count);
    return true;
}

bool exchange_values(CXArchive &archive)
{
    bool equal = exchange(archive, false, true, 'k', static_cast<unsigned char>(0xEF),
        static_cast<short>(-300), static_cast<unsigned short>(0xFFFE), -70000, 0xDEADBEEFU,
        -5'000'000'000LL, 0xFEDCBA9876543210ULL, 0.1F, -1e-310,
        std::bit_cast<double>(0x7FF8000000000BADULL), L'\u20AC');
    for (unsigned long long const count : { 65534ULL, 4294967294ULL, ~0ULL, 65535ULL })
        equal = exchange_count(archive, count) && equal;
    for (int i = 0; i < 65535; ++i)
        equal = exchange(archive, static_cast<unsigned char>(i * 7)) && equal;
    return equal;
}

// Each text wide, and bytes of the same length.
bool exchange_strings(CXArchive &archive)
{
    bool equal = true;
    for (std::u16string const &units : { std::u16string(u"plain"), std::u16string(),
             std::u16string(u"\xE9t\xE9 \x20AC"), std::u16string(u"\xD83D\xDE00 pair"),
             std::u16string(u"\xDE00 lone \xD83D"), std::u16string(u"zero\0in it", 10),
             std::u16string(254, u'a'), std::u16string(255, u'b'), std::u16string(5000, u'c') })
        equal = exchange_cut(archive, to_wide(units))
            && exchange_cut(archive, std::string(units.size(), '\xE9')) && equal;
    if (archive.IsStoring()) {
        archive.WriteStringLength(3, xEncodingUTF8);
        archive.Write("\xE2\x82\xAC", 3);
        archive << CXTString<char>("\x80"); // the same in the ANSI page
    } else {
        for (int i = 0; i < 2; ++i)
            equal = exchange(archive, CXTString<wchar_t>(L"\u20AC")) && equal;
    }
    return exchange_cut(archive, std::string(65532, 'n')) && equal;
}

// Groups and shapes with common parts; every one is reached from the first.
bool exchange_graph(CXArchive &archive)
{
    SampleGroup groups[3];
    SampleShape shapes[2];
    for (int i = 0; i < 3; ++i) {
        groups[i].m_name.Format(L"group %d", i);
        groups[i].m_size = i + 0.5;
        groups[i].m_parent = i == 0 ? nullptr : &groups[i - 1];
        groups[i].m_parts[0] = i == 2 ? &groups[0] : &groups[i + 1];
        groups[i].m_parts[1] = &shapes[i / 2];
        shapes[i / 2].m_parent = &groups[i];
    }
    auto const write = [](CXArchive &target, SampleShape const *root) {
        target << root << root->m_parts[1];
        target.WriteClass(SampleMark::GetThisRuntimeClassDescriptor());
    };
    if (archive.IsStoring()) {
        write(archive, &groups[0]);
        return true;
    }
    SampleGroup *root = nullptr;
    SampleShape *part = nullptr;
    archive >> root >> part;
    archive.SerializeClass(SampleMark::GetThisRuntimeClassDescriptor());
    return part == root->m_parts[1] // graphs that are written alike are alike
        && store_bytes([&](CXArchive &copy) { write(copy, root); })
        == store_bytes([&](CXArchive &copy) { write(copy, &groups[0]); });
}

// More objects than two bytes can number, each of which is referred to again.
bool exchange_many(CXArchive &archive)
{
    constexpr std::size_t many = 33000;
    std::vector<SampleMark> marks(archive.IsStoring() ? many : 0);
    for (std::size_t i = 0; i < many; ++i) {
        if (archive.IsStoring())
            archive << &marks[i];
        else
            SampleShape::s_loaded.emplace_back(archive.ReadObject(nullptr));
    }
    bool equal = true;
    for (std::size_t i = 0; i < many; i += 100) {
        if (archive.IsStoring())
            archive << &marks[i];
        else
            equal = archive.ReadObject(nullptr) == SampleShape::s_loaded[i].get() && equal;
    }
    return equal;
}

} // namespace

std::vector<ArchiveSample> const &get_archive_samples()
{
    static std::vector<ArchiveSample> const samples { { "values", exchange_values },
        { "strings", exchange_strings }, { "graph", exchange_graph }, { "many", exchange_many } };
    return samples;
}

std::string check_values(ArchiveSample const &sample, CXArchive &archive)
{
    AnsiPage const page(1252); // of the unmarked text
    bool equal = false;
    auto const cause = cause_of([&] { equal = sample.m_exchange(archive); });
    SampleShape::s_loaded.clear();
    return cause ? "fails with cause " + std::to_string(cause)
        : !equal ? "reads as other values"
                 : "";
}

std::string write_sample(ArchiveSample const &sample)
{
    return store_bytes([&](CXArchive &archive) { sample.m_exchange(archive); });
}

std::string check_sample(ArchiveSample const &sample, std::string const &bytes)
{
    std::string wrong;
    load_bytes(bytes, [&](CXArchive &archive) {
        wrong += check_values(sample, archive);
        if (archive.GetBytesLeft() != 0)
            wrong += "has more than was written";
    });
    if (!wrong.empty())
        return wrong;
    std::string const own = write_sample(sample);
    auto const at = std::ranges::mismatch(bytes, own).in1 - bytes.begin();
    return bytes == own ? "" : "differs from this build's at byte " + std::to_string(at);
}

} // namespace kor_test
