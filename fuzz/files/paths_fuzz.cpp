// SPDX-License-Identifier: MIT
// Three lines of text through every function on paths, and what must hold of the results: parts
// join to the whole, cleaning twice is cleaning once, parents get shorter, wildcards match as their
// steps say. A byte from 80 on is the upper half of a character of 15 bits, FF makes it one beyond
// 16 bits. The file system is only asked whether names exist.
#include "kortools/files/compact_path.h"
#include "kortools/files/extension_list.h"
#include "kortools/files/file_info.h"
#include "kortools/files/file_names.h"
#include "kortools/files/numbered_names.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/relative_path.h"
#include "kortools/files/tmp_name.h"
#include "kortools/files/wildcards.h"
#include "kortools/platform/portable_paths.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using String = CXTString<wchar_t>;
using View = std::wstring_view;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

std::array<std::wstring, 3> read_lines(std::uint8_t const *bytes, std::size_t size)
{
    std::array<std::wstring, 3> lines;
    std::size_t line = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n' && line < 2) {
            ++line;
        } else if (bytes[i] == 0) {
            continue;
        } else if (bytes[i] < 0x80 || i + 1 == size) {
            lines[line] += static_cast<wchar_t>(bytes[i]);
        } else {
            unsigned const ch = (bytes[i] & 0x7FU) << 8 | bytes[i + 1];
            lines[line] += static_cast<wchar_t>(bytes[i] == 0xFF ? ch + 0x10000 : ch | 1);
            ++i;
        }
    }
    return lines;
}

// Applies a function that changes its argument twice.
template <class Change> String apply_twice(String text, Change change)
{
    change(text);
    String const once = text;
    change(text);
    check(text == once);
    return once;
}

void split(String const &path)
{
    check(CFileInfo(path).GetFullName() == path);
    String const directory = fileStripName(path);
    check(directory.IsEmpty() || fileIsSlashTerminated(directory));
    check(fileStripName(directory) == directory);
    fileStripPath(path, true);
    check(fileRemoveExtension(path).GetLength() <= path.GetLength());
    fileGetExtension(path);
    String const root = fileGetRoot(path);
    check(path.Left(root.GetLength()) == root && fileGetRoot(root) == root);
    String parent = path;
    fileConvertSlash(parent);
    check(fileGetTopDirectory(path).GetLength() >= fileGetRoot(parent).GetLength());
    for (int length = parent.GetLength(); fileGetParentDirectory(parent);) {
        check(parent.GetLength() < length);
        length = parent.GetLength();
    }
}

void normalize(String const &path)
{
    apply_twice(path, [](String &text) { fileConvertSlash(text); });
    apply_twice(path, [](String &text) { fileSlashTerminate(text); });
    String const single = apply_twice(path, [](String &text) { fileRemoveDuplicatedSlash(text); });
    check(single.GetView().find(L"\\\\") == View::npos);
    apply_twice(path, [](String &text) { fileMakePathShortest(text); });
    apply_twice(path, [](String &text) { fileRemoveInvalidChar(text, '_'); });
    for (unsigned const flags : { 0U, 1U, 16U, 6U })
        fileIsValidFileName(path, flags | checkSilent);
}

void number(String const &path, int limit)
{
    int value;
    String const base = fileRemoveNameDigitEnding(path, value);
    check(path.Left(base.GetLength()) == base && (value >= 0) == (base != path));
    for (bool const parenthesis : { false, true }) {
        check(fileNextNumberedName(path, parenthesis) != path);
        String const cut = fileNextNumberedName(path, parenthesis, limit);
        CFileInfo const info(path);
        int const rest = info.GetDirectory().GetLength() + info.GetExtension().GetLength();
        check(limit <= 0 || cut.GetLength() <= std::max(limit, rest + 13)); // " (2147483647)"
        fileCreateUniqueName(path, parenthesis, limit, limit % 2 == 0);
    }
    String const tail = fileCompactPath(path, limit);
    check(tail == path
        || tail.GetLength() <= fileGetRoot(path).GetLength() + 1 + std::max(limit, 10));
    fileCreateTmpName(path, limit % 2 == 0, L"C:\\none\\");
}

void relate(String const &from, String const &to)
{
    fileMakeRelativePath(from, to);
    fileMakeAbsolutePath(from, to, true);
    kortools::platform::PathText way;
    for (bool const is_directory : { false, true }) {
        kortools::platform::portable::make_relative_path(
            { from.GetView(), true }, { to.GetView(), is_directory }, way);
        check(way.length < kortools::platform::max_path_units);
    }
}

void clean(String const &list)
{
    CHashTable<String> set;
    String cleaned = list;
    int const count = fileGetHashFromExtensionList(cleaned, set);
    CHashTable<String> again;
    check(fileCleanExtensionList(cleaned, true, &again) == cleaned);
    check(static_cast<int>(again.GetCount()) == count);
    fileCleanExtensionList(list, false);
    fileMatchWilcards(list, set);
}

bool match_by_steps(View name, View pattern)
{
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t pattern_mark = View::npos;
    std::size_t name_mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            pattern_mark = ++p;
            name_mark = n + 1;
        } else if (p < pattern.size() && (pattern[p] == L'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (pattern_mark == View::npos) {
            return false;
        } else {
            p = pattern_mark;
            n = name_mark++;
        }
    }
    return pattern.find_first_not_of(L'*', p) == View::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    if (size > 4096)
        return 0;
    auto const [path, other, list] = read_lines(bytes, size);
    split(path);
    normalize(path);
    number(path, static_cast<int>(other.size()) - 1);
    relate(path, other);
    clean(list);
    fileMatchWilcards(path, other, false);
    check(fileMatchWilcards(path, other, true) == match_by_steps(path, other));
    return 0;
}
