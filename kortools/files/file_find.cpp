// SPDX-License-Identifier: MIT
#include "kortools/files/file_find.h"

#include "kortools/core/throw.h"
#include "kortools/files/guarded_call.h"
#include "kortools/files/name_pattern.h"
#include "kortools/files/path_kind.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/directory_reader.h"
#include "kortools/platform/shell_paths.h"

#include <optional>
#include <utility>

using namespace kortools::files;
using namespace kortools::platform;
using kortools::core::translate_shortage;

namespace {

xFileFindInfo describe(std::wstring_view directory, std::wstring_view name, EntryFacts const &facts)
{
    return { to_string(name), to_string(join_path(directory, name)), facts.status.attributes,
        facts.status.size, facts.dates.creation, facts.dates.access, facts.dates.write };
}

// The entries of a directory that match, one after the other.
class Matches {
public:
    // False when the directory cannot be read.
    bool open(std::wstring const &directory, std::wstring_view pattern)
    {
        m_directory = directory;
        m_pattern.emplace(pattern);
        if (m_pattern->has_wildcards())
            return m_reader.open(directory.empty() ? L"." : directory.c_str());
        m_single = pattern;
        return true;
    }

    // False at the end. With `files_only` directories do not match.
    bool next(xFileFindInfo &info, bool files_only)
    {
        if (!m_pattern->has_wildcards())
            return find_single(info, files_only);
        while (m_reader.next()) {
            std::wstring const name = m_reader.get_name();
            if (!m_pattern->matches(name) || (files_only && m_reader.is_directory()))
                continue;
            EntryFacts facts;
            if (!m_reader.get_facts(facts))
                continue; // it is gone
            info = describe(m_directory, name, facts);
            return true;
        }
        return false;
    }

private:
    bool find_single(xFileFindInfo &info, bool files_only)
    {
        std::wstring const name = std::exchange(m_single, {});
        std::wstring const path = join_path(m_directory, name);
        EntryFacts facts;
        if (name.empty() || !get_file_status(path.c_str(), facts.status)
            || !get_file_dates(path.c_str(), facts.dates)
            || (files_only && facts.status.is_directory()))
            return false;
        info = describe(m_directory, name, facts);
        return true;
    }

    std::wstring m_directory;
    std::optional<NamePattern> m_pattern;
    std::wstring m_single; // the name to look up, while that is to be done
    DirectoryReader m_reader;
};

} // namespace

bool filePathContainMatchingFile(CXTString<wchar_t> const &directory,
    CXTString<wchar_t> const &pattern, xFileFindInfo *info, unsigned int *timeout)
{
    using Found = std::optional<xFileFindInfo>;
    auto const find = [pattern](auto const &name, auto const &) {
        Matches matches;
        xFileFindInfo match;
        return matches.open(std::wstring(name.GetView()), pattern.GetView())
                && matches.next(match, true)
            ? Found(match)
            : Found();
    };
    Found const found = run_guarded(directory, timeout, Found(), find);
    if (found && info)
        *info = *found;
    return found.has_value();
}

struct CXFileFind::Search {
    Matches matches;
    xFileFindInfo next; // the match that FindNextFile() goes to
};

CXFileFind::CXFileFind() = default;
CXFileFind::~CXFileFind() = default;

bool CXFileFind::FindFile(wchar_t const *pattern)
{
    Close();
    std::wstring_view const path = pattern && *pattern ? pattern : L"*.*";
    std::size_t const name = path.find_last_of(L"\\/:") + 1; // 0 when there is none
    return translate_shortage([&] {
        std::wstring const directory(path.substr(0, name));
        m_root = to_string(directory);
        auto search = std::make_unique<Search>();
        if (!search->matches.open(directory, path.substr(name))
            || !search->matches.next(search->next, false))
            return false;
        m_search = std::move(search);
        return true;
    });
}

bool CXFileFind::FindNextFile()
{
    if (!m_search)
        return false;
    m_info = m_search->next;
    if (translate_shortage([&] { return m_search->matches.next(m_search->next, false); }))
        return true;
    m_search.reset();
    return false;
}

void CXFileFind::Close()
{
    m_search.reset();
    m_root.Empty();
    m_info = xFileFindInfo();
}

CXTString<wchar_t> CXFileFind::GetFileTitle() const
{
    std::wstring_view const name = m_info.fileName;
    return to_string(name.substr(0, find_extension(name)));
}
