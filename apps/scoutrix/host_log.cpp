// SPDX-License-Identifier: MIT
#include "apps/scoutrix/host_log.h"

#include "apps/common/console.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/log.h"
#include "kortools/files/file_status.h"

namespace scoutrix {

HostLog::HostLog(Text const &path)
{
    constexpr unsigned long long largest = 4 << 20; // bytes
    Text const file = path.IsEmpty() ? GetUserApplicationDataPath() + L"scoutrix.log" : path;
    LogFileMode const mode = fileGetSize(file) > largest ? logFileCreate : logFileAppend;
    if (!SetLogFile(file, mode) && !SetLogFile(file, logFileNew))
        kor_apps::print_error("scoutrix", L"warning: no log can be written to " + file);
}

HostLog::~HostLog()
{
    CloseLogFile();
}

LogIndent::LogIndent()
{
    LogFileAddTab(true);
}

LogIndent::~LogIndent()
{
    LogFileAddTab(false);
}

void log_line(Text const &line)
{
    WriteToLogFile(L"%s\n", line.GetConstBuffer());
}

void report_error(Text const &message)
{
    log_line(L"error: " + message);
    kor_apps::print_error("scoutrix", message);
}

void report_warning(Text const &message)
{
    log_line(L"warning: " + message);
    kor_apps::print_error("scoutrix", L"warning: " + message);
}

} // namespace scoutrix
