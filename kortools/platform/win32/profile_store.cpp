// SPDX-License-Identifier: MIT
#include "kortools/platform/profile_store.h"

#include <cstring>
#include <memory>
#include <windows.h>

namespace kortools::platform {
namespace {

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

// Only one thread or process of the user writes while this lives: a key that one finds empty and
// deletes must not get a value from another meanwhile. Whoever does not get on is not waited for.
class WriterTurn {
public:
    WriterTurn()
        : m_mutex(CreateMutexW(nullptr, FALSE, L"Local\\KorTools.Profile"))
    {
        DWORD const outcome = m_mutex ? WaitForSingleObject(m_mutex, patience_ms) : WAIT_FAILED;
        m_is_owner = outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED;
    }
    WriterTurn(WriterTurn const &) = delete;
    WriterTurn &operator=(WriterTurn const &) = delete;
    ~WriterTurn()
    {
        if (m_is_owner)
            ReleaseMutex(m_mutex);
        if (m_mutex)
            CloseHandle(m_mutex);
    }

private:
    static constexpr DWORD patience_ms = 5000;
    HANDLE const m_mutex;
    bool m_is_owner = false;
};

bool is_valid(ProfilePlace const &place)
{
    return is_profile_name(place.product) && place.product.find(L'\\') == place.product.npos
        && is_profile_name(place.section);
}

std::wstring get_product_key(ProfilePlace const &place)
{
    return L"Software\\Brantis\\" + std::wstring(place.product);
}

std::wstring get_section_key(ProfilePlace const &place)
{
    return get_product_key(place) + L'\\' + std::wstring(place.section);
}

Key open_section(ProfilePlace const &place, REGSAM access)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, get_section_key(place).c_str(), 0, access, &key) != 0)
        return nullptr;
    return Key(key);
}

std::optional<ProfileValue> to_value(DWORD type, ProfileBytes bytes)
{
    switch (type) {
    case REG_DWORD: {
        std::int32_t number = 0;
        if (bytes.size() != sizeof number)
            return std::nullopt;
        std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    case REG_SZ: {
        std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
        text.resize(text.find(L'\0') != text.npos ? text.find(L'\0') : text.size());
        return text;
    }
    case REG_BINARY:
        return bytes;
    default:
        return std::nullopt;
    }
}

bool set_value(HKEY key, std::wstring const &entry, DWORD type, void const *bytes, std::size_t size)
{
    return size <= 0x7FFFFFFF
        && RegSetValueExW(key, entry.c_str(), 0, type, static_cast<BYTE const *>(bytes),
               static_cast<DWORD>(size))
        == 0;
}

// Deletes a key that has no keys and no values.
bool delete_empty_key(std::wstring const &path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != 0)
        return false;
    DWORD keys = 1;
    DWORD values = 1;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
        nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return keys == 0 && values == 0 && RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str()) == 0;
}

// From the section up to the product.
void delete_empty_keys(ProfilePlace const &place)
{
    std::size_t const product_size = get_product_key(place).size();
    std::wstring path = get_section_key(place);
    while (path.size() >= product_size) {
        HKEY key = nullptr;
        bool const exists = RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) == 0;
        if (exists)
            RegCloseKey(key);
        if (exists && !delete_empty_key(path))
            return;
        path.resize(path.rfind(L'\\'));
    }
}

} // namespace

std::optional<ProfileValue> read_profile(ProfilePlace const &place)
{
    if (!is_valid(place) || !is_profile_name(place.entry))
        return std::nullopt;
    Key const key = open_section(place, KEY_QUERY_VALUE);
    if (!key)
        return std::nullopt;
    std::wstring const entry(place.entry);
    ProfileBytes bytes(256);
    while (true) {
        auto size = static_cast<DWORD>(bytes.size());
        DWORD type = REG_NONE;
        LSTATUS const status
            = RegQueryValueExW(key.get(), entry.c_str(), nullptr, &type, bytes.data(), &size);
        if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA)
            return std::nullopt;
        bytes.resize(size); // another process may have made it larger since
        if (status == ERROR_SUCCESS)
            return to_value(type, std::move(bytes));
    }
}

bool write_profile(ProfilePlace const &place, ProfileValue const &value)
{
    if (!is_valid(place) || !is_profile_name(place.entry))
        return false;
    WriterTurn const turn;
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, get_section_key(place).c_str(), 0, nullptr, 0,
            KEY_SET_VALUE, nullptr, &opened, nullptr)
        != 0)
        return false;
    Key const key(opened);
    std::wstring const entry(place.entry);
    if (auto const *const number = std::get_if<std::int32_t>(&value))
        return set_value(key.get(), entry, REG_DWORD, number, sizeof *number);
    if (auto const *const text = std::get_if<std::wstring>(&value))
        return set_value(
            key.get(), entry, REG_SZ, text->c_str(), (text->size() + 1) * sizeof(wchar_t));
    auto const &bytes = std::get<ProfileBytes>(value);
    return set_value(key.get(), entry, REG_BINARY, bytes.data(), bytes.size());
}

bool delete_profile(ProfilePlace const &place)
{
    if (!is_valid(place))
        return false;
    WriterTurn const turn;
    bool deleted = false;
    if (place.entry.empty()) {
        deleted = RegDeleteTreeW(HKEY_CURRENT_USER, get_section_key(place).c_str()) == 0;
    } else if (Key const key = open_section(place, KEY_SET_VALUE)) {
        deleted = RegDeleteValueW(key.get(), std::wstring(place.entry).c_str()) == 0;
    }
    if (deleted)
        delete_empty_keys(place);
    return deleted;
}

void release_profile() { }

} // namespace kortools::platform
