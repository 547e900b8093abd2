// SPDX-License-Identifier: MIT
#include "kortools/files/file_names.h"

#include "kortools/files/file_status.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/message_box.h"
#include "kortools/platform/shell_paths.h"
#include "kortools/text/string_table.h"

#include <algorithm>

using namespace kortools::files;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

// Numbers of texts
constexpr unsigned int no_name = 5501;
constexpr unsigned int bad_characters = 5502;
constexpr unsigned int not_absolute = 5503;
constexpr unsigned int no_directory = 5504;

constexpr wchar_t separators[] = L" : / \\";
constexpr unsigned int exclamation = 0x30; // an OK button and the sign of a warning

bool refuse(unsigned int flags, unsigned int text, wchar_t const *more = L"")
{
    if ((flags & checkSilent) == 0)
        platform::show_message_box(xLoadString(text) + more, exclamation);
    return false;
}

bool has_valid_characters(String const &name, unsigned int flags)
{
    if (flags & checkWholePath)
        return name.FindOneOf(L"*?\"<>|") < 0;
    return !(flags & checkName) || fileStripPath(name).FindOneOf(L"*?\"<>|:/\\") < 0;
}

bool is_in_directory(String const &path)
{
    std::wstring_view const view = view_of(path);
    return fileDirectoryExists(to_string(view.substr(0, platform::remove_file_spec(view).length)));
}

} // namespace

void fileRemoveInvalidChar(CXTString<wchar_t> &name, char replacement)
{
    int const invalid = name.FindOneOf(L"<>:\"/\\|?*.");
    if (invalid >= 0)
        name.ReleaseBuffer(invalid);
    if (replacement != ' ')
        name.Replace(L' ', static_cast<wchar_t>(static_cast<unsigned char>(replacement)));
}

bool fileIsValidFileName(CXTString<wchar_t> const &name, unsigned int flags)
{
    if (name.IsEmpty())
        return (flags & checkAllowEmpty) || refuse(flags, no_name);
    if (!has_valid_characters(name, flags))
        return refuse(flags, bad_characters, (flags & checkWholePath) ? L"" : separators);
    if (!(flags & checkDirectory))
        return true;
    String const path = converted(name);
    if (fileIsPathRelative(path))
        return (flags & checkAllowRelative) || refuse(flags, not_absolute);
    return is_in_directory(path) || refuse(flags, no_directory);
}
