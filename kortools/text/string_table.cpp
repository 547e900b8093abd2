// SPDX-License-Identifier: MIT
#include "kortools/text/string_table.h"

#include "kortools/platform/language.h"
#include "kortools/text/texts.h"

#include <algorithm>

namespace kortools::text {
namespace {

constexpr unsigned int french_primary = french & 0x3FF;

thread_local unsigned int s_thread_language = 0; // 0: the user's

} // namespace

void set_thread_language(unsigned int language)
{
    s_thread_language = language;
}

unsigned int get_active_language()
{
    unsigned int const primary
        = s_thread_language ? s_thread_language & 0x3FF : platform::get_user_primary_language();
    return primary == french_primary ? french : english;
}

} // namespace kortools::text

CXTString<wchar_t> xLoadString(unsigned int id)
{
    using kortools::text::Text;
    std::span<Text const> const texts = kortools::text::get_texts();
    auto const found = std::ranges::lower_bound(texts, id, {}, &Text::id);
    if (found == texts.end() || found->id != id)
        return {};
    bool const is_french = kortools::text::get_active_language() == kortools::text::french;
    return CXTString<wchar_t>(is_french ? found->french : found->english);
}
