// SPDX-License-Identifier: MIT
#include "kortools/app/win_app.h"

#include "kortools/app/application.h"
#include "kortools/data/custom_data.h"
#include "kortools/platform/profile_store.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

// The names of a value, as long as they are needed.
struct Place {
    Place(CWinApp const &app, wchar_t const *section, wchar_t const *entry)
        : m_product(app.GetProfileName())
        , m_section(section ? section : L"")
        , m_entry(entry ? entry : L"")
    {
    }
    platform::ProfilePlace get() const { return { m_product, m_section, m_entry }; }

private:
    String m_product;
    std::wstring_view m_section;
    std::wstring_view m_entry;
};

template <class T> std::optional<T> read(Place const &place)
{
    std::optional<platform::ProfileValue> value = platform::read_profile(place.get());
    if (T *const found = value ? std::get_if<T>(&*value) : nullptr)
        return std::move(*found);
    return std::nullopt;
}

bool write(Place const &place, platform::ProfileValue const &value)
{
    return IsPreferencesSavingEnabled() && platform::write_profile(place.get(), value);
}

// Empty for a text with other characters.
std::string get_ascii(std::wstring_view text)
{
    std::string ascii;
    for (wchar_t const ch : text) {
        if (static_cast<char32_t>(ch) >= 0x80)
            return {};
        ascii += static_cast<char>(ch);
    }
    return ascii;
}

// The whole text has to be the number.
template <class T> bool read_number(Place const &place, T &number, T default_value)
{
    number = default_value;
    std::string const text = get_ascii(read<std::wstring>(place).value_or(std::wstring()));
    T parsed {};
    char const *const end = text.data() + text.size();
    auto const [last, error] = std::from_chars(text.data(), end, parsed);
    if (error != std::errc() || last != end)
        return false;
    number = parsed;
    return true;
}

template <class T> bool write_number(Place const &place, T number)
{
    char text[32];
    char *const end = std::to_chars(text, text + sizeof text, number).ptr;
    return write(place, std::wstring(text, end));
}

} // namespace

CWinApp::CWinApp() = default;

CWinApp::~CWinApp() = default;

CXTString<wchar_t> CWinApp::GetProfileName() const
{
    return GetInternalProductName();
}

int CWinApp::GetProfileInt(wchar_t const *section, wchar_t const *entry, int defaultValue) const
{
    return read<std::int32_t>(Place(*this, section, entry)).value_or(defaultValue);
}

bool CWinApp::WriteProfileInt(wchar_t const *section, wchar_t const *entry, int value)
{
    return write(Place(*this, section, entry), std::int32_t { value });
}

CXTString<wchar_t> CWinApp::GetProfileString(
    wchar_t const *section, wchar_t const *entry, wchar_t const *defaultValue) const
{
    std::optional<std::wstring> const text = read<std::wstring>(Place(*this, section, entry));
    return text ? String(*text) : String(defaultValue);
}

bool CWinApp::WriteProfileString(wchar_t const *section, wchar_t const *entry, wchar_t const *value)
{
    if (!value)
        return entry && *entry && DeleteProfileKey(section, entry);
    return write(Place(*this, section, entry), std::wstring(value));
}

bool CWinApp::GetProfileBinary(
    wchar_t const *section, wchar_t const *entry, void **data, unsigned int *size) const
{
    *data = nullptr;
    *size = 0;
    auto const bytes = read<platform::ProfileBytes>(Place(*this, section, entry));
    if (!bytes)
        return false;
    auto const count = static_cast<unsigned int>(bytes->size());
    *data = CCustomData::Alloc(std::max(count, 1U));
    if (!*data)
        return false;
    if (count != 0)
        std::memcpy(*data, bytes->data(), count);
    *size = count;
    return true;
}

bool CWinApp::WriteProfileBinary(
    wchar_t const *section, wchar_t const *entry, void const *data, unsigned int size)
{
    auto const *const bytes = static_cast<unsigned char const *>(data);
    return write(Place(*this, section, entry), platform::ProfileBytes(bytes, bytes + size));
}

void CWinApp::Free(void *block)
{
    CCustomData::Free(block);
}

bool CWinApp::GetProfileFloat(
    wchar_t const *section, wchar_t const *entry, float &value, float defaultValue) const
{
    return read_number(Place(*this, section, entry), value, defaultValue);
}

bool CWinApp::WriteProfileFloat(wchar_t const *section, wchar_t const *entry, float value)
{
    return write_number(Place(*this, section, entry), value);
}

bool CWinApp::GetProfileLongUInt(wchar_t const *section, wchar_t const *entry,
    unsigned long long &value, unsigned long long defaultValue) const
{
    return read_number(Place(*this, section, entry), value, defaultValue);
}

bool CWinApp::WriteProfileLongUInt(
    wchar_t const *section, wchar_t const *entry, unsigned long long value)
{
    return write_number(Place(*this, section, entry), value);
}

bool CWinApp::DeleteProfileKey(wchar_t const *section, wchar_t const *entry)
{
    if (entry && !*entry) // a missing name is not a whole section
        return false;
    return IsPreferencesSavingEnabled()
        && platform::delete_profile(Place(*this, section, entry).get());
}
