// SPDX-License-Identifier: MIT
// Profiles: values by section and entry, kept for the calling user from one run to the next.
//
//   Windows  the registry, HKEY_CURRENT_USER\Software\Brantis\<product>\<section>
//   Linux    $XDG_CONFIG_HOME/Brantis/<product>.ini (~/.config without the variable), which
//            profile_text.h describes
//
// Any thread and any process may read and write at any time; nothing is lost, and on Linux a file
// is replaced as a whole. Letters are the same in upper and lower case (on Linux those of ASCII).
// A section "a\b" lies below the section "a". Names may be up to 200 characters, and not empty.
//
// A file that is not one (above 16 MB, or with zero bytes) has no values, and stays as it is:
// writes fail. In any other one, lines that mean nothing are skipped, and lost with the next write.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kortools::platform {

using ProfileBytes = std::vector<unsigned char>;
using ProfileValue = std::variant<std::int32_t, std::wstring, ProfileBytes>;

struct ProfilePlace {
    std::wstring_view product;
    std::wstring_view section;
    std::wstring_view entry;
};

// Nothing when there is no such value, or no way to it.
std::optional<ProfileValue> read_profile(ProfilePlace const &place);

// True when the value is where the next run finds it. A text ends at its first zero.
bool write_profile(ProfilePlace const &place, ProfileValue const &value);

// Removes the value or, for an empty entry, the section with those below it. Places that are empty
// then go, too. False when there was nothing.
bool delete_profile(ProfilePlace const &place);

// Frees what is kept of the file that was used last.
void release_profile();

inline bool is_profile_name(std::wstring_view name)
{
    return !name.empty() && name.size() <= 200;
}

} // namespace kortools::platform
