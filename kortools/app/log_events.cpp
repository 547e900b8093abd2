// SPDX-License-Identifier: MIT
#include "kortools/app/log_events.h"

#include "kortools/app/application_paths.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/stdio_file_ex.h"
#include "kortools/core/critical_section.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/message_hook.h"

#include <cstdlib>
#include <memory>
#include <string>

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

struct Trace {
    CXCriticalSection m_lock;
    std::unique_ptr<CStdioFileEx> m_file; // does not throw; null: no trace
    bool m_ends_with_process = false;
};

// Never destroyed: the trace ends with the process.
Trace &get_trace()
{
    static auto *const s_trace = new Trace;
    return *s_trace;
}

String get_new_path()
{
    String const start = GetUserApplicationDataPath() + L"eventsLog";
    String path;
    for (int number = 1; path.IsEmpty() || fileExists(path); ++number)
        path.Format(L"%s%d%s", start.GetConstBuffer(), number, L".txt");
    return path;
}

// Nothing may get out into the system's call.
void write_message(platform::WindowMessage const &message)
try {
    Trace &trace = get_trace();
    CXSingleLock const lock(&trace.m_lock, true);
    if (!trace.m_file)
        return;
    String line;
    line.Format(L"Msg 0x%.8x lParam 0x%.8x wParam 0x%.8x Window %s Class %s\n", message.number,
        static_cast<unsigned int>(message.lparam), static_cast<unsigned int>(message.wparam),
        message.window, message.window_class);
    trace.m_file->WriteString(line);
    trace.m_file->Flush();
} catch (CXException *exception) {
    exception->Delete();
} catch (...) { // no memory: the line is left out
}

} // namespace

void LogEvents()
{
    Trace &trace = get_trace();
    CXSingleLock const lock(&trace.m_lock, true);
    if (trace.m_file)
        return;
    auto file = std::make_unique<CStdioFileEx>(false);
    if (!file->Open(get_new_path(),
            CXFile::modeWrite | CXFile::modeCreate | CXFile::shareDenyWrite | CXStdioFile::typeText
                | CStdioFileEx::typeUnicode | CStdioFileEx::unicodeUTF8)
        || !platform::begin_message_hook(write_message))
        return;
    trace.m_file = std::move(file);
    if (!trace.m_ends_with_process)
        trace.m_ends_with_process = std::atexit(UnlogEvents) == 0;
}

void UnlogEvents()
{
    Trace &trace = get_trace();
    CXSingleLock const lock(&trace.m_lock, true);
    if (!trace.m_file)
        return;
    platform::end_message_hook();
    trace.m_file.reset();
}
