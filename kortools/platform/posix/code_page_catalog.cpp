// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/code_page_catalog.h"

#include "kortools/platform/code_pages.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace kortools::platform {
namespace {

using enum PageBase;
using enum PageKind;

// Sorted by page.
constexpr CodePageEntry catalog[] = {
    { 2, "macos-0_2-10.2", Table, Ascii, u'?' }, // the Macintosh page
    { 37, "ibm-37_P100-1995", Table, Other, u'?' },
    { 437, "ibm-437_P100-1995", Table, Ascii, u'?' },
    { 500, "ibm-500_P100-1995", Table, Other, u'?' },
    { 720, "ibm-720_P100-1997", Table, Ascii, u'?' },
    { 737, "ibm-737_P100-1997", Table, Ascii, u'?' },
    { 775, "ibm-775_P100-1996", Table, Ascii, u'?' },
    { 850, "ibm-850_P100-1995", Table, Ascii, u'?' },
    { 852, "ibm-852_P100-1995", Table, Ascii, u'?' },
    { 855, "ibm-855_P100-1995", Table, Ascii, u'?' },
    { 857, "ibm-857_P100-1995", Table, Ascii, u'?' },
    { 858, "ibm-858_P100-1997", Table, Ascii, u'?' },
    { 860, "ibm-860_P100-1995", Table, Ascii, u'?' },
    { 861, "ibm-861_P100-1995", Table, Ascii, u'?' },
    { 862, "ibm-862_P100-1995", Table, Ascii, u'?' },
    { 863, "ibm-863_P100-1995", Table, Ascii, u'?' },
    { 864, "ibm-864_X110-1999", Table, Ascii, u'?' },
    { 865, "ibm-865_P100-1995", Table, Ascii, u'?' },
    { 866, "ibm-866_P100-1995", Table, Ascii, u'?' },
    { 869, "ibm-869_P100-1995", Table, Ascii, u'?' },
    { 870, "ibm-870_P100-1995", Table, Other, u'?' },
    { 874, "windows-874-2000", Table, Ascii, u'?' },
    { 875, "ibm-875_P100-1995", Table, Other, u'?' },
    { 932, "ibm-943_P15A-2003", Table, Ascii, u'\u30FB' },
    { 936, "windows-936-2000", Table, Ascii, u'?' },
    { 949, "windows-949-2000", Table, Ascii, u'?' },
    { 950, "windows-950-2000", Table, Ascii, u'?' },
    { 1026, "ibm-1026_P100-1995", Table, Other, u'?' },
    { 1047, "ibm-1047_P100-1995", Table, Other, u'?' },
    { 1140, "ibm-1140_P100-1997", Table, Other, u'?' },
    { 1141, "ibm-1141_P100-1997", Table, Other, u'?' },
    { 1142, "ibm-1142_P100-1997", Table, Other, u'?' },
    { 1143, "ibm-1143_P100-1997", Table, Other, u'?' },
    { 1144, "ibm-1144_P100-1997", Table, Other, u'?' },
    { 1145, "ibm-1145_P100-1997", Table, Other, u'?' },
    { 1146, "ibm-1146_P100-1997", Table, Other, u'?' },
    { 1147, "ibm-1147_P100-1997", Table, Other, u'?' },
    { 1148, "ibm-1148_P100-1997", Table, Other, u'?' },
    { 1149, "ibm-1149_P100-1997", Table, Other, u'?' },
    { 1250, "ibm-5346_P100-1998", Table, Ascii, u'?' },
    { 1251, "ibm-5347_P100-1998", Table, Ascii, u'?' },
    { 1252, "ibm-5348_P100-1997", Table, Ascii, u'?' },
    { 1253, "ibm-5349_P100-1998", Table, Ascii, u'?' },
    { 1254, "ibm-5350_P100-1998", Table, Ascii, u'?' },
    { 1255, "ibm-9447_P100-2002", Table, Ascii, u'?' },
    { 1256, "ibm-9448_X100-2005", Table, Ascii, u'?' },
    { 1257, "ibm-9449_P100-2002", Table, Ascii, u'?' },
    { 1258, "ibm-5354_P100-1998", Table, Ascii, u'?' },
    { 10000, "macos-0_2-10.2", Table, Ascii, u'?' },
    { 10006, "macos-6_2-10.4", Table, Ascii, u'?' },
    { 10007, "macos-7_3-10.2", Table, Ascii, u'?' },
    { 10029, "macos-29-10.2", Table, Ascii, u'?' },
    { 10081, "macos-35-10.2", Table, Ascii, u'?' },
    { 20127, "US-ASCII", Table, Ascii, u'?' },
    { 20273, "ibm-273_P100-1995", Table, Other, u'?' },
    { 20277, "ibm-277_P100-1995", Table, Other, u'?' },
    { 20278, "ibm-278_P100-1995", Table, Other, u'?' },
    { 20280, "ibm-280_P100-1995", Table, Other, u'?' },
    { 20284, "ibm-284_P100-1995", Table, Other, u'?' },
    { 20285, "ibm-285_P100-1995", Table, Other, u'?' },
    { 20290, "ibm-290_P100-1995", Table, Other, u'?' },
    { 20297, "ibm-297_P100-1995", Table, Other, u'?' },
    { 20420, "ibm-420_X120-1999", Table, Other, u'?' },
    { 20424, "ibm-424_P100-1995", Table, Other, u'?' },
    { 20838, "ibm-838_P100-1995", Table, Other, u'?' },
    { 20866, "ibm-878_P100-1996", Table, Ascii, u'?' },
    { 20871, "ibm-871_P100-1995", Table, Other, u'?' },
    { 21025, "ibm-1025_P100-1995", Table, Other, u'?' },
    { 21866, "ibm-1168_P100-2002", Table, Ascii, u'?' },
    { 28591, "ISO-8859-1", Table, Ascii, u'?' },
    { 28592, "ibm-912_P100-1995", Table, Ascii, u'?' },
    { 28593, "ibm-913_P100-2000", Table, Ascii, u'?' },
    { 28594, "ibm-914_P100-1995", Table, Ascii, u'?' },
    { 28595, "ibm-915_P100-1995", Table, Ascii, u'?' },
    { 28596, "ibm-1089_P100-1995", Table, Ascii, u'?' },
    { 28597, "ibm-9005_X110-2007", Table, Ascii, u'?' },
    { 28598, "ibm-5012_P100-1999", Table, Ascii, u'?' },
    { 28599, "ibm-920_P100-1995", Table, Ascii, u'?' },
    { 28603, "ibm-921_P100-1995", Table, Ascii, u'?' },
    { 28605, "ibm-923_P100-1998", Table, Ascii, u'?' },
    { 38598, "ibm-5012_P100-1999", Table, Ascii, u'?' },
    { 50220, "ISO_2022,locale=ja,version=0", Converter, Other, u'\u30FB' },
    { 50221, "ISO_2022,locale=ja,version=1", Converter, Other, u'\u30FB' },
    { 50222, "ISO_2022,locale=ja,version=0", Converter, Other, u'\u30FB' },
    { 50225, "ISO_2022,locale=ko,version=0", Converter, Other, u'?' },
    { 50227, "ISO_2022,locale=zh,version=0", Converter, Other, u'?' },
    { 51932, "euc-jp-2007", Converter, Ascii, u'\u30FB' },
    { 51936, "ibm-1383_P110-1999", Table, Ascii, u'?' },
    { 51949, "ibm-970_P110_P110-2006_U2", Table, Ascii, u'?' },
    { 52936, "HZ", Converter, Other, u'?' },
    { 54936, "gb18030", Converter, Ascii, u'?' },
    { 57002, "ISCII,version=0", Converter, Other, u'?' },
    { 57003, "ISCII,version=1", Converter, Other, u'?' },
    { 57004, "ISCII,version=5", Converter, Other, u'?' },
    { 57005, "ISCII,version=6", Converter, Other, u'?' },
    { 57006, "ISCII,version=1", Converter, Other, u'?' },
    { 57007, "ISCII,version=4", Converter, Other, u'?' },
    { 57008, "ISCII,version=7", Converter, Other, u'?' },
    { 57009, "ISCII,version=8", Converter, Other, u'?' },
    { 57010, "ISCII,version=3", Converter, Other, u'?' },
    { 57011, "ISCII,version=2", Converter, Other, u'?' },
    { 65000, "UTF-7", Converter, Other, u'\uFFFD' },
};

struct CharsetPage {
    std::string_view charset; // upper-case letters and digits only
    unsigned int page;
};

constexpr CharsetPage charsets[] = {
    { "BIG5", 950 },
    { "CP1250", 1250 },
    { "CP1251", 1251 },
    { "CP1252", 1252 },
    { "CP1253", 1253 },
    { "CP1254", 1254 },
    { "CP1255", 1255 },
    { "CP1256", 1256 },
    { "CP1257", 1257 },
    { "CP1258", 1258 },
    { "CP932", 932 },
    { "CP949", 949 },
    { "EUCCN", 936 },
    { "EUCJP", 51932 },
    { "EUCKR", 51949 },
    { "GB18030", 54936 },
    { "GB2312", 936 },
    { "GBK", 936 },
    { "IBM437", 437 },
    { "IBM850", 850 },
    { "IBM852", 852 },
    { "IBM866", 866 },
    { "ISO88591", 28591 },
    { "ISO885913", 28603 },
    { "ISO885915", 28605 },
    { "ISO88592", 28592 },
    { "ISO88593", 28593 },
    { "ISO88594", 28594 },
    { "ISO88595", 28595 },
    { "ISO88596", 28596 },
    { "ISO88597", 28597 },
    { "ISO88598", 28598 },
    { "ISO88599", 28599 },
    { "KOI8R", 20866 },
    { "KOI8U", 21866 },
    { "SHIFTJIS", 932 },
    { "SJIS", 932 },
    { "TIS620", 874 },
    { "UHC", 949 },
};

} // namespace

CodePageEntry const *find_code_page(unsigned int page)
{
    static_assert(std::ranges::is_sorted(catalog, {}, &CodePageEntry::page));
    auto const *const entry = std::ranges::lower_bound(catalog, page, {}, &CodePageEntry::page);
    return entry != std::end(catalog) && entry->page == page ? entry : nullptr;
}

std::size_t get_code_page_index(CodePageEntry const &entry)
{
    static_assert(std::size(catalog) <= max_code_pages);
    return static_cast<std::size_t>(&entry - catalog);
}

unsigned int find_charset_page(char const *charset)
{
    std::string name;
    for (char const *at = charset; *at; ++at) {
        if (std::isalnum(static_cast<unsigned char>(*at)))
            name += static_cast<char>(std::toupper(static_cast<unsigned char>(*at)));
    }
    auto const *const known = std::ranges::find(charsets, name, &CharsetPage::charset);
    return known != std::end(charsets) ? known->page : utf8_code_page;
}

} // namespace kortools::platform
