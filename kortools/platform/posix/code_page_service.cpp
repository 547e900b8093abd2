// SPDX-License-Identifier: MIT
#include "kortools/platform/code_page_service.h"

#include "kortools/platform/code_pages.h"
#include "kortools/platform/posix/code_page_catalog.h"
#include "kortools/platform/posix/code_page_table.h"
#include "kortools/platform/posix/icu_converter.h"

#include <langinfo.h>
#include <locale.h>

namespace kortools::platform {
namespace {

unsigned int read_locale_page()
{
    locale_t const user = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!user)
        return utf8_code_page; // the locale is not installed: as plain C
    unsigned int const page = find_charset_page(nl_langinfo_l(CODESET, user));
    freelocale(user);
    return page;
}

} // namespace

unsigned int get_system_ansi_code_page()
{
    static unsigned int const s_page = read_locale_page();
    return s_page;
}

unsigned int get_system_oem_code_page()
{
    return get_system_ansi_code_page();
}

bool find_system_code_page(unsigned int page, SystemCodePage &result)
{
    auto const *const entry = find_code_page(page);
    result = { page, entry, entry && entry->base == PageBase::Ascii };
    return entry != nullptr;
}

long long convert_from_code_page(
    SystemCodePage const &page, char const *source, int size, wchar_t *target, int capacity)
{
    auto const &entry = *static_cast<CodePageEntry const *>(page.entry);
    if (entry.kind == PageKind::Converter)
        return decode_with_converter(entry, source, size, target, capacity);
    auto const *const table = CodePageTable::get(entry);
    return table ? table->decode(
               source, static_cast<std::size_t>(size), target, static_cast<std::size_t>(capacity))
                 : -1;
}

long long convert_to_code_page(
    SystemCodePage const &page, wchar_t const *source, int length, char *target, int capacity)
{
    auto const &entry = *static_cast<CodePageEntry const *>(page.entry);
    if (entry.kind == PageKind::Converter)
        return encode_with_converter(entry, source, length, target, capacity);
    auto const *const table = CodePageTable::get(entry);
    return table ? table->encode(
               source, static_cast<std::size_t>(length), target, static_cast<std::size_t>(capacity))
                 : -1;
}

} // namespace kortools::platform
