// SPDX-License-Identifier: MIT
// The rules of shell_paths.h, written once and without the system: used where the system has no
// such functions, and compared with them where it has.
//
// Odd cases are kept as Windows has them: a colon ends a root wherever it stands, a blank ends an
// extension, only "C:\" survives a "..", which otherwise leaves "\".
#pragma once

#include <cstddef>
#include <string_view>

namespace kortools::platform {

// UTF-16 units of a path with its zero: longer ones are refused where a result is built.
inline constexpr std::size_t max_path_units = 260;

// A path built in place.
struct PathText {
    wchar_t text[max_path_units]; // undefined behind the zero that ends it
    std::size_t length = 0;

    PathText() { text[0] = L'\0'; }

    std::wstring_view view() const { return { text, length }; }
};

// The length that remains of a path, and whether the function did what it is called for.
struct PathCut {
    std::size_t length;
    bool is_done;

    bool operator==(PathCut const &) const = default;
};

// A path, and whether it is one of a directory or of a file.
struct PathEnd {
    std::wstring_view path;
    bool is_directory;
};

namespace portable {

// Where the last component begins. '\', '/' and ':' end a component, but not at the end of the path
// or before another separator: "C:\a\" gives "a\".
std::size_t find_file_name(std::wstring_view path);

// Where the extension with its dot begins; the length of the path when it has none. A dot counts
// when no '\' and no blank follows it: "a.b c" has none.
std::size_t find_extension(std::wstring_view path);

// "scheme:" at the front, of two or more letters, digits, '+', '-' and '.'.
bool is_url(std::wstring_view path);

// "\\" at the front; below "\\?\" only "\\?\UNC\".
bool is_unc_path(std::wstring_view path);

bool is_unc_server_share(std::wstring_view path); // "\\server\share", without a separator behind it

// Neither '\' nor a drive ("C:a" is not relative) at the front; an empty path is relative.
bool is_relative_path(std::wstring_view path);

// "\", "C:\", "\\server" and "\\server\share", and what stands for them behind "\\?\".
bool is_root_path(std::wstring_view path);

// The root; done when there is one. Otherwise what is left is what remove_file_spec() would leave
// in the end: nothing, or a text that ends at a colon.
PathCut strip_to_root(std::wstring_view path);

// The path without its last component and the '\' before it; done when that changes it. Roots stay
// as they are, except for shares, which become servers.
PathCut remove_file_spec(std::wstring_view path);

// Resolves the components "." and "..". False, with an empty result, for a path of 260 units or
// more.
//
//   C:\a\.\b\..  =>  C:\a
//   C:\..\a      =>  C:\a
//   a\..\..\b    =>  \b
//   \\s\h\..\a   =>  \\s\h\a
//   (empty)      =>  "\"
bool canonicalize_path(std::wstring_view path, PathText &result);

// How to come from one path to another; a file's own name is not part of the way. Upper and lower
// case ASCII letters are the same. False, with an empty result, when they have no root or component
// in common, and when a path or the result has 260 units or more.
//
//   C:\a\b (directory)  C:\a\c\d  =>  ..\c\d
//   C:\a\b (file)       C:\a\b\c  =>  .\b\c
//   C:\a\b (file)       C:\a      =>  ..\a, or . when that is a directory
bool make_relative_path(PathEnd from, PathEnd to, PathText &result);

} // namespace portable
} // namespace kortools::platform
