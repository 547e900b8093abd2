// SPDX-License-Identifier: MIT
#include "kortools/files/tmp_name.h"

#include "kortools/app/application_paths.h"
#include "kortools/files/file_status.h"
#include "kortools/files/numbered_names.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/known_folders.h"
#include "kortools/platform/shell_paths.h"

#include <string_view>

using namespace kortools::files;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

// Dots, and the letters of the Latin-1 page but its last one.
bool stays(wchar_t ch)
{
    if (ch < 0x80)
        return (ch >= L'A' && ch <= L'Z') || (ch >= L'a' && ch <= L'z') || ch == L'.';
    if (ch < 0xC0)
        return ch == 0xAA || ch == 0xB5 || ch == 0xBA;
    return ch < 0xFF && ch != 0xD7 && ch != 0xF7;
}

String strip_characters(std::wstring_view name)
{
    String letters;
    for (wchar_t const ch : name) {
        if (stays(ch))
            letters += ch;
    }
    if (letters[0] == L'.')
        letters.Insert(0, L"tmp");
    return letters;
}

String get_directory(String const &dir)
{
    if (!dir.IsEmpty())
        return dir;
    String folder = platform::get_temp_folder();
    if (folder.IsEmpty())
        return GetCommonApplicationDataPath();
    fileSlashTerminate(folder);
    return folder;
}

} // namespace

CXTString<wchar_t> fileCreateTmpName(
    CXTString<wchar_t> const &name, bool keepName, CXTString<wchar_t> const &dir)
{
    std::wstring_view const path = view_of(name);
    std::wstring_view const last = path.substr(platform::find_file_name(path));
    String const result
        = get_directory(dir) + (keepName ? to_string(last) : strip_characters(last));
    return fileExists(result) ? fileCreateUniqueName(result, false) : result;
}
