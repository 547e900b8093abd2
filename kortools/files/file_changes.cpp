// SPDX-License-Identifier: MIT
#include "kortools/files/file_changes.h"

#include "kortools/files/file_status.h"
#include "kortools/platform/file_changes.h"
#include "kortools/platform/message_box.h"
#include "kortools/text/string_table.h"

using namespace kortools::platform;

namespace {

constexpr unsigned int replace_question = 5510;
constexpr unsigned int yes_no_question = 0x4 | 0x20 | 0x100; // a question mark; "no" by default
constexpr int answer_yes = 6;

} // namespace

bool fileCopy(CXTString<wchar_t> const &source, CXTString<wchar_t> const &target, bool failIfExists)
{
    return copy_file(source, target, failIfExists ? Existing::Keep : Existing::Replace);
}

bool fileMove(CXTString<wchar_t> const &source, CXTString<wchar_t> const &target, bool renameOnly)
{
    return renameOnly ? move_file(source, target, Existing::Keep, OtherVolume::Refuse)
                      : move_file(source, target, Existing::Replace, OtherVolume::Copy);
}

bool fileRename(CXTString<wchar_t> const &oldName, CXTString<wchar_t> const &newName)
{
    return move_file(oldName, newName, Existing::Keep, OtherVolume::Copy);
}

bool fileDelete(CXTString<wchar_t> const &path)
{
    return delete_file(path);
}

bool fileAskForReplace(CXTString<wchar_t> const &path)
{
    if (!fileExists(path))
        return true;
    CXTString<wchar_t> question = xLoadString(replace_question);
    question.Replace(L"%1", path);
    return show_message_box(question, yes_no_question) == answer_yes;
}
