// SPDX-License-Identifier: MIT
// ICU's formats with the patterns that Windows has for a locale. A table holds those of common
// locales, which differ from ICU's; for the others ICU's own come close: the full date for the long
// one, the short one with a year of four digits, and digits 0 to 9, which Windows leaves to the
// drawing of the text to replace.
#include "kortools/platform/locale_format.h"

#include "kortools/platform/wide_text.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <type_traits>
#include <unicode/udat.h>
#include <unicode/uloc.h>

namespace kortools::platform {
namespace {

enum Kind { LongDate, ShortDate, TimeOfDay, KindCount };

struct KnownPatterns {
    std::string_view locale;
    std::u16string_view patterns[KindCount];
};

constexpr KnownPatterns known_patterns[] = {
    { "da_DK", { u"d. MMMM y", u"dd-MM-y", u"HH:mm" } },
    { "de_AT", { u"EEEE, d. MMMM y", u"dd.MM.y", u"HH:mm" } },
    { "de_CH", { u"EEEE, d. MMMM y", u"dd.MM.y", u"HH:mm" } },
    { "de_DE", { u"EEEE, d. MMMM y", u"dd.MM.y", u"HH:mm" } },
    { "en_GB", { u"dd MMMM y", u"dd/MM/y", u"HH:mm" } },
    { "en_US", { u"EEEE, MMMM d, y", u"M/d/y", u"H:mm a" } },
    { "es_ES", { u"EEEE, d 'de' MMMM 'de' y", u"dd/MM/y", u"H:mm" } },
    { "fr_CA", { u"d MMMM y", u"y-MM-dd", u"HH:mm" } },
    { "fr_FR", { u"EEEE d MMMM y", u"dd/MM/y", u"HH:mm" } },
    { "it_IT", { u"EEEE d MMMM y", u"dd/MM/y", u"HH:mm" } },
    { "ja_JP", { u"y年M月d日", u"y/MM/dd", u"H:mm" } },
    { "ko_KR", { u"y년 M월 d일 EEEE", u"y-MM-dd", u"a H:mm" } },
    { "nl_NL", { u"EEEE d MMMM y", u"d-M-y", u"HH:mm" } },
    { "pl_PL", { u"d MMMM y", u"dd.MM.y", u"HH:mm" } },
    { "pt_BR", { u"EEEE, d 'de' MMMM 'de' y", u"dd/MM/y", u"HH:mm" } },
    { "zh_CN", { u"y年M月d日", u"y/M/d", u"H:mm" } },
};

using IcuFormat = std::unique_ptr<std::remove_pointer_t<UDateFormat *>, decltype(&udat_close)>;

// What get(target, capacity, status) writes.
template <class T, class Get> std::basic_string<T> get_icu_text(Get get)
{
    T text[256];
    UErrorCode status = U_ZERO_ERROR;
    int const length = get(text, 256, &status);
    if (U_FAILURE(status) || length > 256)
        return {};
    return { text, text + length };
}

std::string get_user_locale()
{
    for (char const *const name : { "LC_ALL", "LC_TIME", "LANG" }) {
        char const *const value = std::getenv(name);
        if (value && *value)
            return value;
    }
    return "C";
}

// fr_FR.UTF-8@euro, fr-FR, fr and C => fr_FR, fr_FR, fr_FR and en_US
std::string get_language_and_country(std::string const &locale)
{
    std::string const name = locale.substr(0, locale.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX")
        return "en_US";
    auto const full = get_icu_text<char>([&](char *target, int capacity, UErrorCode *status) {
        return uloc_addLikelySubtags(name.c_str(), target, capacity, status);
    });
    auto const language = get_icu_text<char>([&](char *target, int capacity, UErrorCode *status) {
        return uloc_getLanguage(full.c_str(), target, capacity, status);
    });
    auto const country = get_icu_text<char>([&](char *target, int capacity, UErrorCode *status) {
        return uloc_getCountry(full.c_str(), target, capacity, status);
    });
    return language + "_" + country;
}

IcuFormat open_format(UDateFormatStyle time_style, UDateFormatStyle date_style,
    std::string const &locale, std::u16string_view pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    UDateFormat *const format = udat_open(time_style, date_style, locale.c_str(), u"Etc/UTC", -1,
        pattern.data(), static_cast<int>(pattern.size()), &status);
    return IcuFormat(U_SUCCESS(status) ? format : nullptr, udat_close);
}

std::u16string with_long_year(std::u16string pattern)
{
    std::size_t const year = pattern.find(u'y');
    if (year != std::u16string::npos && pattern.find_last_of(u'y') == year + 1)
        pattern.erase(year, 1); // one y is the whole year
    return pattern;
}

// The hour on the clock of 24 hours; a plain blank before the marker.
std::u16string with_24_hours(std::u16string pattern)
{
    bool is_quoted = false;
    for (char16_t &ch : pattern) {
        is_quoted ^= ch == u'\'';
        if (is_quoted)
            continue;
        if (ch == u'h' || ch == u'K' || ch == u'k')
            ch = u'H';
        else if (ch == u'b' || ch == u'B')
            ch = u'a';
        else if (ch == u'\u202F' || ch == u'\u00A0')
            ch = u' ';
    }
    return pattern;
}

std::u16string get_icu_pattern(std::string const &locale, Kind kind)
{
    UDateFormatStyle const date_style = kind == LongDate ? UDAT_FULL : UDAT_SHORT;
    IcuFormat const format = kind == TimeOfDay ? open_format(UDAT_SHORT, UDAT_NONE, locale, {})
                                               : open_format(UDAT_NONE, date_style, locale, {});
    if (!format)
        return {};
    auto pattern = get_icu_text<char16_t>([&](char16_t *target, int capacity, UErrorCode *status) {
        return udat_toPattern(format.get(), false, target, capacity, status);
    });
    if (kind == TimeOfDay)
        return with_24_hours(std::move(pattern));
    return kind == ShortDate ? with_long_year(std::move(pattern)) : pattern;
}

std::u16string get_pattern(std::string const &locale, Kind kind)
{
    auto const known = std::ranges::find(
        known_patterns, get_language_and_country(locale), &KnownPatterns::locale);
    if (known != std::end(known_patterns))
        return std::u16string(known->patterns[kind]);
    return get_icu_pattern(locale, kind);
}

// fr_FR.UTF-8@euro => fr_FR@numbers=latn
std::string get_icu_locale(std::string const &locale)
{
    std::string name = locale.substr(0, locale.find('.'));
    std::string const language = name.substr(0, name.find_first_of("_@-"));
    bool const is_latin = locale.ends_with("@latin");
    name = name.substr(0, name.find('@'));
    if (name.empty() || name == "C" || name == "POSIX")
        name = "en_US";
    if (is_latin)
        name.insert(language.size(), "_Latn");
    return name + "@numbers=latn";
}

// The formats of the locale that a thread used last; ICU's are used by one thread at a time.
class LocaleFormats {
public:
    std::wstring format(std::string const &locale, Kind kind, DateTime const &date_time);

private:
    UDateFormat const *get(std::string const &locale, Kind kind);

    std::string m_locale;
    std::array<IcuFormat, KindCount> m_formats { IcuFormat(nullptr, udat_close),
        IcuFormat(nullptr, udat_close), IcuFormat(nullptr, udat_close) };
};

thread_local LocaleFormats t_formats;

UDateFormat const *LocaleFormats::get(std::string const &locale, Kind kind)
{
    if (locale != m_locale) {
        for (IcuFormat &format : m_formats)
            format.reset();
        m_locale = locale;
    }
    IcuFormat &format = m_formats[kind];
    if (!format) {
        std::string const name = get_icu_locale(locale);
        format = open_format(UDAT_PATTERN, UDAT_PATTERN, name, get_pattern(name, kind));
    }
    return format.get();
}

std::wstring LocaleFormats::format(std::string const &locale, Kind kind, DateTime const &date_time)
{
    UDateFormat const *const format = get(locale.empty() ? get_user_locale() : locale, kind);
    if (!format)
        return std::wstring();
    long long const days = count_days(date_time.year, date_time.month - 1, date_time.day);
    double const milliseconds
        = 1000.0 * static_cast<double>(count_seconds(days, date_time.hour, date_time.minute, 0));
    auto const text
        = get_icu_text<char16_t>([&](char16_t *target, int capacity, UErrorCode *status) {
              return udat_format(format, milliseconds, target, capacity, nullptr, status);
          });
    std::wstring result(count_wide_characters(text.data(), text.size()), L'\0');
    copy_from_utf16(text.data(), text.size(), result.data());
    return result;
}

} // namespace

std::wstring format_date(DateTime const &date, DateLength length, std::string const &locale)
{
    if (!is_date(date))
        return std::wstring();
    DateTime const day { date.year, date.month, date.day };
    return t_formats.format(locale, length == DateLength::Long ? LongDate : ShortDate, day);
}

std::wstring format_time_of_day(DateTime const &time, std::string const &locale)
{
    if (!is_time_of_day(time))
        return std::wstring();
    return t_formats.format(locale, TimeOfDay, { 1970, 1, 1, time.hour, time.minute });
}

} // namespace kortools::platform
