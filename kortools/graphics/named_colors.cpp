// SPDX-License-Identifier: MIT
#include "kortools/graphics/named_colors.h"

#include <algorithm>
#include <atomic>
#include <string_view>

namespace kortools::graphics {
namespace {

std::atomic<Theme> s_theme { Theme::Light };

struct NamedColor {
    std::wstring_view name; // lower case
    unsigned long rgb;      // 0xRRGGBB
};

// Those of web pages; the greys in both spellings.
// clang-format off
constexpr NamedColor named_colors[] = {
    { L"aliceblue", 0xF0F8FF }, { L"antiquewhite", 0xFAEBD7 }, { L"aqua", 0x00FFFF },
    { L"aquamarine", 0x7FFFD4 }, { L"azure", 0xF0FFFF }, { L"beige", 0xF5F5DC },
    { L"bisque", 0xFFE4C4 }, { L"black", 0x000000 }, { L"blanchedalmond", 0xFFEBCD },
    { L"blue", 0x0000FF }, { L"blueviolet", 0x8A2BE2 }, { L"brown", 0xA52A2A },
    { L"burlywood", 0xDEB887 }, { L"cadetblue", 0x5F9EA0 }, { L"chartreuse", 0x7FFF00 },
    { L"chocolate", 0xD2691E }, { L"coral", 0xFF7F50 }, { L"cornflowerblue", 0x6495ED },
    { L"cornsilk", 0xFFF8DC }, { L"crimson", 0xDC143C }, { L"cyan", 0x00FFFF },
    { L"darkblue", 0x00008B }, { L"darkcyan", 0x008B8B }, { L"darkgoldenrod", 0xB8860B },
    { L"darkgray", 0xA9A9A9 }, { L"darkgreen", 0x006400 }, { L"darkgrey", 0xA9A9A9 },
    { L"darkkhaki", 0xBDB76B }, { L"darkmagenta", 0x8B008B }, { L"darkolivegreen", 0x556B2F },
    { L"darkorange", 0xFF8C00 }, { L"darkorchid", 0x9932CC }, { L"darkred", 0x8B0000 },
    { L"darksalmon", 0xE9967A }, { L"darkseagreen", 0x8FBC8F }, { L"darkslateblue", 0x483D8B },
    { L"darkslategray", 0x2F4F4F }, { L"darkslategrey", 0x2F4F4F }, { L"darkturquoise", 0x00CED1 },
    { L"darkviolet", 0x9400D3 }, { L"deeppink", 0xFF1493 }, { L"deepskyblue", 0x00BFFF },
    { L"dimgray", 0x696969 }, { L"dimgrey", 0x696969 }, { L"dodgerblue", 0x1E90FF },
    { L"firebrick", 0xB22222 }, { L"floralwhite", 0xFFFAF0 }, { L"forestgreen", 0x228B22 },
    { L"fuchsia", 0xFF00FF }, { L"gainsboro", 0xDCDCDC }, { L"ghostwhite", 0xF8F8FF },
    { L"gold", 0xFFD700 }, { L"goldenrod", 0xDAA520 }, { L"gray", 0x808080 },
    { L"green", 0x008000 }, { L"greenyellow", 0xADFF2F }, { L"grey", 0x808080 },
    { L"honeydew", 0xF0FFF0 }, { L"hotpink", 0xFF69B4 }, { L"indianred", 0xCD5C5C },
    { L"indigo", 0x4B0082 }, { L"ivory", 0xFFFFF0 }, { L"khaki", 0xF0E68C },
    { L"lavender", 0xE6E6FA }, { L"lavenderblush", 0xFFF0F5 }, { L"lawngreen", 0x7CFC00 },
    { L"lemonchiffon", 0xFFFACD }, { L"lightblue", 0xADD8E6 }, { L"lightcoral", 0xF08080 },
    { L"lightcyan", 0xE0FFFF }, { L"lightgoldenrodyellow", 0xFAFAD2 }, { L"lightgray", 0xD3D3D3 },
    { L"lightgreen", 0x90EE90 }, { L"lightgrey", 0xD3D3D3 }, { L"lightpink", 0xFFB6C1 },
    { L"lightsalmon", 0xFFA07A }, { L"lightseagreen", 0x20B2AA }, { L"lightskyblue", 0x87CEFA },
    { L"lightslategray", 0x778899 }, { L"lightslategrey", 0x778899 },
    { L"lightsteelblue", 0xB0C4DE }, { L"lightyellow", 0xFFFFE0 }, { L"lime", 0x00FF00 },
    { L"limegreen", 0x32CD32 }, { L"linen", 0xFAF0E6 }, { L"magenta", 0xFF00FF },
    { L"maroon", 0x800000 }, { L"mediumaquamarine", 0x66CDAA }, { L"mediumblue", 0x0000CD },
    { L"mediumorchid", 0xBA55D3 }, { L"mediumpurple", 0x9370DB }, { L"mediumseagreen", 0x3CB371 },
    { L"mediumslateblue", 0x7B68EE }, { L"mediumspringgreen", 0x00FA9A },
    { L"mediumturquoise", 0x48D1CC }, { L"mediumvioletred", 0xC71585 },
    { L"midnightblue", 0x191970 }, { L"mintcream", 0xF5FFFA }, { L"mistyrose", 0xFFE4E1 },
    { L"moccasin", 0xFFE4B5 }, { L"navajowhite", 0xFFDEAD }, { L"navy", 0x000080 },
    { L"oldlace", 0xFDF5E6 }, { L"olive", 0x808000 }, { L"olivedrab", 0x6B8E23 },
    { L"orange", 0xFFA500 }, { L"orangered", 0xFF4500 }, { L"orchid", 0xDA70D6 },
    { L"palegoldenrod", 0xEEE8AA }, { L"palegreen", 0x98FB98 }, { L"paleturquoise", 0xAFEEEE },
    { L"palevioletred", 0xDB7093 }, { L"papayawhip", 0xFFEFD5 }, { L"peachpuff", 0xFFDAB9 },
    { L"peru", 0xCD853F }, { L"pink", 0xFFC0CB }, { L"plum", 0xDDA0DD },
    { L"powderblue", 0xB0E0E6 }, { L"purple", 0x800080 }, { L"red", 0xFF0000 },
    { L"rosybrown", 0xBC8F8F }, { L"royalblue", 0x4169E1 }, { L"saddlebrown", 0x8B4513 },
    { L"salmon", 0xFA8072 }, { L"sandybrown", 0xF4A460 }, { L"seagreen", 0x2E8B57 },
    { L"seashell", 0xFFF5EE }, { L"sienna", 0xA0522D }, { L"silver", 0xC0C0C0 },
    { L"skyblue", 0x87CEEB }, { L"slateblue", 0x6A5ACD }, { L"slategray", 0x708090 },
    { L"slategrey", 0x708090 }, { L"snow", 0xFFFAFA }, { L"springgreen", 0x00FF7F },
    { L"steelblue", 0x4682B4 }, { L"tan", 0xD2B48C }, { L"teal", 0x008080 },
    { L"thistle", 0xD8BFD8 }, { L"tomato", 0xFF6347 }, { L"turquoise", 0x40E0D0 },
    { L"violet", 0xEE82EE }, { L"wheat", 0xF5DEB3 }, { L"white", 0xFFFFFF },
    { L"whitesmoke", 0xF5F5F5 }, { L"yellow", 0xFFFF00 }, { L"yellowgreen", 0x9ACD32 },
};
// clang-format on
static_assert(std::ranges::is_sorted(named_colors, {}, &NamedColor::name));

// The three that are hard to read on a dark ground.
constexpr NamedColor dark_theme_colors[]
    = { { L"blue", 0x9CDCFF }, { L"green", 0xA0D534 }, { L"red", 0xF55762 } };

constexpr std::size_t longest_name = std::ranges::max(named_colors, {}, [](auto const &color) {
    return color.name.size();
}).name.size();

wchar_t to_lower(wchar_t ch)
{
    return ch >= L'A' && ch <= L'Z' ? static_cast<wchar_t>(ch - L'A' + L'a') : ch;
}

// The low 8 bits of the decimal number at the beginning, which may have blanks and a sign.
unsigned long read_component(std::wstring_view text)
{
    std::size_t at = std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size());
    bool const is_negative = at < text.size() && text[at] == L'-';
    if (at < text.size() && (text[at] == L'-' || text[at] == L'+'))
        ++at;
    unsigned long value = 0;
    for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9'; ++at)
        value = value * 10 + static_cast<unsigned long>(text[at] - L'0');
    return (is_negative ? 0 - value : value) & 0xFF;
}

unsigned long read_components(std::wstring_view text)
{
    unsigned long const red = read_component(text);
    unsigned long const second = read_component(text.substr(text.find(L',') + 1));
    return red | second << 8 | second << 16;
}

// The number of a component; it ends at what is no digit.
unsigned long read_hex(std::wstring_view digits)
{
    unsigned long value = 0;
    for (wchar_t const digit : digits) {
        std::size_t const number = std::wstring_view(L"0123456789abcdef").find(to_lower(digit));
        if (number == std::wstring_view::npos)
            break;
        value = value * 16 + static_cast<unsigned long>(number);
    }
    return value;
}

unsigned long read_hex_components(std::wstring_view text)
{
    if (text.size() != 7 || text[0] != L'#')
        return 0;
    return read_hex(text.substr(1, 2)) | read_hex(text.substr(3, 2)) << 8
        | read_hex(text.substr(5, 2)) << 16;
}

template <std::size_t size>
NamedColor const *find(NamedColor const (&colors)[size], std::wstring_view name)
{
    auto const found = std::ranges::lower_bound(colors, name, {}, &NamedColor::name);
    return found != std::end(colors) && found->name == name ? found : nullptr;
}

unsigned long find_by_name(std::wstring_view text)
{
    wchar_t buffer[longest_name];
    if (text.size() > longest_name)
        return 0;
    std::ranges::transform(text, buffer, to_lower);
    std::wstring_view const name(buffer, text.size());
    NamedColor const *color = get_theme() == Theme::Dark ? find(dark_theme_colors, name) : nullptr;
    if (!color)
        color = find(named_colors, name);
    if (!color)
        return 0;
    return color->rgb >> 16 | (color->rgb & 0xFF00) | (color->rgb & 0xFF) << 16;
}

unsigned long read_color(std::wstring_view text)
{
    if (text.find(L',') != std::wstring_view::npos)
        return read_components(text);
    if (text.find(L'#') != std::wstring_view::npos)
        return read_hex_components(text);
    return find_by_name(text);
}

} // namespace

void set_theme(Theme theme)
{
    s_theme.store(theme, std::memory_order_relaxed);
}

Theme get_theme()
{
    return s_theme.load(std::memory_order_relaxed);
}

} // namespace kortools::graphics

CXNamedColors::CXNamedColors(CXTString<wchar_t> const &text)
    : m_word(kortools::graphics::read_color({ text.begin(), text.end() }))
{
}

CXTString<wchar_t> CXNamedColors::GetHexString() const
{
    CXTString<wchar_t> text;
    text.Format(L"#%02X%02X%02X", static_cast<unsigned int>(m_word >> 16 & 0xFF),
        static_cast<unsigned int>(m_word >> 8 & 0xFF), static_cast<unsigned int>(m_word & 0xFF));
    return text;
}
