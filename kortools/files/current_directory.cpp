// SPDX-License-Identifier: MIT
#include "kortools/files/current_directory.h"

#include "kortools/files/guarded_call.h"
#include "kortools/platform/current_directory.h"

#include <memory>
#include <utility>

using kortools::platform::NextDirectory;

CCurrentDir gCurrentDir;

namespace {

using Directory = std::unique_ptr<NextDirectory>;

Directory open_within(CXTString<wchar_t> const &path, unsigned int *timeout)
{
    return kortools::files::run_guarded(
        path, timeout, Directory(), [](auto const &name, auto const &) {
            auto directory = std::make_unique<NextDirectory>();
            return directory->open(name) ? std::move(directory) : nullptr;
        });
}

} // namespace

bool CCurrentDir::Push(CXTString<wchar_t> const &path, unsigned int *timeout)
{
    // Only opening has a limit: a change that comes late would surprise everybody.
    Directory const next = open_within(path, timeout);
    if (!next)
        return false;
    m_saved.Add(Get()); // first, because it may throw
    if (next->change())
        return true;
    m_saved.RemoveAt(m_saved.GetUpperBound());
    return false;
}

bool CCurrentDir::Pop()
{
    if (m_saved.IsEmpty())
        return false;
    CXTString<wchar_t> const saved = m_saved[m_saved.GetUpperBound()];
    m_saved.RemoveAt(m_saved.GetUpperBound());
    NextDirectory next;
    return next.open(saved) && next.change();
}

CXTString<wchar_t> CCurrentDir::Get()
{
    return kortools::platform::get_current_directory().c_str();
}

bool filePushCurrentDirectory(CXTString<wchar_t> const &path, unsigned int *timeout)
{
    return gCurrentDir.Push(path, timeout);
}

bool filePopCurrentDirectory()
{
    return gCurrentDir.Pop();
}

CXTString<wchar_t> fileGetCurrentDirectory()
{
    return CCurrentDir::Get();
}
