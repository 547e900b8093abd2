// SPDX-License-Identifier: MIT
// One lock guards everything but the level. A line is formatted under it, into strings that keep
// their blocks, and leaves the file's buffer in a single call of the system.
#include "kortools/app/log.h"

#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/stdio_file_ex.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/data/xtime.h"
#include "kortools/files/numbered_names.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/threads.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <memory>
#include <optional>

namespace {

using kortools::platform::get_current_thread_id;

constexpr unsigned int table_size = 23; // slots, at first
constexpr unsigned int open_flags = CXFile::modeWrite | CXFile::modeCreate | CXFile::shareDenyWrite
    | CXStdioFile::typeText | CStdioFileEx::typeUnicode | CStdioFileEx::unicodeUTF8;

constinit std::atomic<unsigned int> s_level { logLevelAll };
constinit std::atomic<bool> s_is_open { false }; // changed under the lock

unsigned int to_log_thread(unsigned long long thread)
{
    return static_cast<unsigned int>(thread);
}

class Log {
public:
    bool open(CXTString<wchar_t> const &path, LogFileMode mode, unsigned int level);
    bool close();

    bool is_enabled();
    unsigned int add_tab(bool add);
    template <class T> void write(T const *format, std::va_list args);

    void lock();
    void unlock();

private:
    using Tabs = CXTString<wchar_t>;

    Tabs const *find_tabs(unsigned long long thread) const
    {
        return m_tabs->Find(to_log_thread(thread));
    }
    Tabs const *find_tabs_of_line() const;
    static bool passes(Tabs const *tabs, unsigned int level)
    {
        return level == logLevelAll || !tabs
            || static_cast<unsigned int>(tabs->GetLength()) <= level;
    }
    CXTString<wchar_t> &get_scratch(wchar_t const *) { return m_wide; }
    CXTString<char> &get_scratch(char const *) { return m_narrow; }
    void put(wchar_t const *, CXTString<wchar_t> const &text) { m_file->WriteString(text); }
    void put(char const *, CXTString<char> const &text) { m_file->WriteStringA(text); }

    CXCriticalSection m_lock;
    std::atomic<unsigned long long> m_caller { 0 }; // the thread that is inside LogLock()
    unsigned int m_caller_depth = 0;                // of its calls
    std::unique_ptr<CStdioFileEx> m_file;           // does not throw; null when no log is open
    std::optional<CHashMap<unsigned int, unsigned int, Tabs>> m_tabs; // while m_file is there
    CXTString<wchar_t> m_wide;
    CXTString<char> m_narrow;
};

// Never destroyed: threads and static objects write to the log until the process ends, and no line
// waits for it to be closed.
Log &get_log()
{
    static auto *const s_log = new Log;
    return *s_log;
}

// Keeps the thread's last errors, and lets nothing out.
template <class Call> auto run_quietly(Call call) noexcept -> decltype(call())
{
    int const saved_errno = errno; // not every number has a code
    unsigned int const error = kortools::platform::get_last_os_error();
    decltype(call()) result {};
    try {
        result = call();
    } catch (CXException *exception) {
        exception->Delete();
    } catch (...) {
    }
    kortools::platform::set_last_os_error(error);
    errno = saved_errno;
    return result;
}

bool has_directory(std::wstring_view path)
{
    return path.find_first_of(L"\\/:") != std::wstring_view::npos;
}

CXTString<wchar_t> find_place(CXTString<wchar_t> const &path, LogFileMode mode)
{
    CXTString<wchar_t> place = path;
    if (!has_directory(path))
        place = GetUserApplicationDataPath() + path;
    return mode == logFileNew ? fileCreateUniqueName(place, true) : place;
}

bool Log::open(CXTString<wchar_t> const &path, LogFileMode mode, unsigned int level)
{
    CXSingleLock const lock(&m_lock, true);
    if (m_file)
        return false;
    s_level = level;
    auto file = std::make_unique<CStdioFileEx>(false);
    unsigned int const keeps = mode == logFileAppend ? CXFile::modeNoTruncate : 0U;
    if (!file->Open(find_place(path, mode), open_flags | keeps))
        return false;
    // The file does not throw, and from another place it would be overwritten.
    if (mode == logFileAppend
        && kortools::platform::get_file_size(file->GetHandle())
            != static_cast<long long>(file->Seek(0, CXFile::end)))
        return false;
    m_tabs.emplace(table_size);
    m_file = std::move(file);
    s_is_open = true;
    return true;
}

bool Log::close()
{
    CXSingleLock const lock(&m_lock, true);
    bool const was_open = m_file != nullptr;
    s_is_open = false;
    m_file.reset();
    m_tabs.reset();
    return was_open;
}

bool Log::is_enabled()
{
    CXSingleLock const lock(&m_lock, true);
    unsigned int const level = s_level;
    return m_file && level != logLevelNone && passes(find_tabs(get_current_thread_id()), level);
}

unsigned int Log::add_tab(bool add)
{
    CXSingleLock const lock(&m_lock, true);
    if (!m_file)
        return 0;
    unsigned int const thread = to_log_thread(get_current_thread_id());
    Tabs *const tabs = m_tabs->Find(thread);
    if (!tabs)
        return add ? static_cast<unsigned int>(m_tabs->Insert(thread, Tabs(L'\t'))) : 0;
    int const depth = tabs->GetLength() + (add ? 1 : -1);
    if (add)
        *tabs += L'\t';
    else if (depth > 0)
        tabs->ReleaseBuffer(depth);
    else
        m_tabs->Remove(thread);
    return static_cast<unsigned int>(depth);
}

// The main thread's, while it has some.
Log::Tabs const *Log::find_tabs_of_line() const
{
    Tabs const *const of_main = find_tabs(GetApplicationMainThreadID());
    return of_main ? of_main : find_tabs(get_current_thread_id());
}

template <class T> void Log::write(T const *format, std::va_list args)
{
    CXSingleLock const lock(&m_lock, true);
    unsigned int const level = s_level;
    if (!m_file || level == logLevelNone)
        return;
    Tabs const *const tabs = find_tabs_of_line();
    if (!passes(tabs, level))
        return;
    CXTString<T> &text = get_scratch(format);
    text.FormatV(format, args);
    unsigned long long const start = m_file->GetPosition();
    if (tabs)
        m_file->WriteString(*tabs);
    put(format, text);
    m_file->Flush();
    if (m_file->GetPosition() == start && !text.IsEmpty())
        m_file->SetLength(start); // the disk is full: no part of the line stays
}

// Only callers of LogLock() count here, so that a surplus unlock cannot take the lock away from a
// function of this file, or from another thread.
void Log::lock()
{
    m_lock.Lock();
    m_caller.store(get_current_thread_id(), std::memory_order_relaxed);
    ++m_caller_depth;
}

void Log::unlock()
{
    if (m_caller.load(std::memory_order_relaxed) != get_current_thread_id())
        return;
    if (--m_caller_depth == 0)
        m_caller.store(0, std::memory_order_relaxed);
    m_lock.Unlock();
}

void write_header()
{
    CXTString<wchar_t> const name = GetApplicationName(true);
    CXTString<wchar_t> const time = CXTime::GetTickCount().Format(L"%c");
    WriteToLogFile(L"\n\n*************************\nLogging information for %s (%s)\nRelease Mode\n"
                   L"*************************\n",
        name.GetConstBuffer(), time.GetConstBuffer());
}

template <class T> void write_quietly(T const *format, std::va_list args) noexcept
{
    if (!format || !s_is_open || s_level == logLevelNone)
        return; // without waiting for those that write
    run_quietly([&] {
        get_log().write(format, args);
        return true;
    });
}

} // namespace

bool SetLogFile(CXTString<wchar_t> const &path, LogFileMode mode, unsigned int level)
{
    return run_quietly([&] {
        if (!get_log().open(path, mode, level))
            return false;
        run_quietly([] { // the log is open, whether there is memory for this or not
            if (IsLogFileEnabled())
                write_header();
            return true;
        });
        return true;
    });
}

void WriteToLogFile(wchar_t const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    write_quietly(format, args);
    va_end(args);
}

void WriteToLogFile(char const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    write_quietly(format, args);
    va_end(args);
}

unsigned int SetLogLevel(unsigned int level)
{
    return s_level.exchange(level);
}

bool IsLogFileEnabled()
{
    return s_is_open && run_quietly([] { return get_log().is_enabled(); });
}

unsigned int LogFileAddTab(bool add)
{
    return s_is_open ? run_quietly([&] { return get_log().add_tab(add); }) : 0;
}

void LogLock(bool lock)
{
    run_quietly([&] {
        lock ? get_log().lock() : get_log().unlock();
        return true;
    });
}

bool CloseLogFile()
{
    return s_is_open && run_quietly([] { return get_log().close(); });
}
