// SPDX-License-Identifier: MIT
#include "kortools/platform/automation_strings.h"

#include "kortools/platform/wide_text.h"

#include <cstdlib>
#include <cwchar>

namespace kortools::platform {
namespace {

// In front of the text: its size in the last four bytes, the rest keeps the text aligned.
constexpr std::size_t header_size = 8;

unsigned char *get_size_field(char16_t *text)
{
    return reinterpret_cast<unsigned char *>(text) - sizeof(std::uint32_t);
}

} // namespace

char16_t *allocate_automation_string(wchar_t const *source)
{
    if (!source)
        return nullptr;
    std::size_t const length = std::wcslen(source);
    std::size_t const size = count_utf16_units(source, length) * sizeof(char16_t);
    if (size > UINT32_MAX)
        return nullptr; // the size field could not hold it
    auto *const block
        = static_cast<unsigned char *>(std::malloc(header_size + size + sizeof(char16_t)));
    if (!block)
        return nullptr;
    auto *const text = reinterpret_cast<char16_t *>(block + header_size);
    auto const field = static_cast<std::uint32_t>(size);
    std::memcpy(get_size_field(text), &field, sizeof field);
    copy_to_utf16(source, length, text);
    text[size / sizeof(char16_t)] = u'\0';
    return text;
}

void free_automation_string(char16_t *text)
{
    if (text)
        std::free(reinterpret_cast<unsigned char *>(text) - header_size);
}

unsigned int get_automation_string_length(char16_t const *text)
{
    if (!text)
        return 0;
    std::uint32_t size;
    std::memcpy(&size, get_size_field(const_cast<char16_t *>(text)), sizeof size);
    return static_cast<unsigned int>(size / sizeof(char16_t));
}

} // namespace kortools::platform
