// SPDX-License-Identifier: MIT
#include "kortools/app/start.h"

#include "kortools/app/application.h"
#include "kortools/app/application_state.h"
#include "kortools/app/exit_callback_table.h"
#include "kortools/app/log.h"
#include "kortools/app/thread_records.h"
#include "kortools/archive/exception.h"
#include "kortools/files/file_type_registry.h"
#include "kortools/files/plugin_modules.h"
#include "kortools/files/plugins.h"
#include "kortools/platform/fault_signals.h"
#include "kortools/platform/invalid_parameters.h"
#include "kortools/platform/profile_store.h"
#include "kortools/platform/program.h"

#include <atomic>

namespace app = kortools::app;
namespace files = kortools::files;
namespace platform = kortools::platform;

namespace {

constinit std::atomic<bool> s_is_started { false };

[[noreturn]] void throw_fault(char const *name)
{
    kortools::archive::throw_exception(new CXException(CXTString<wchar_t>(name)));
}

void log_invalid_parameter(platform::InvalidParameter const &parameter)
{
    wchar_t const *const function = parameter.function ? parameter.function : L"?";
    wchar_t const *const expression = parameter.expression ? parameter.expression : L"?";
    WriteToLogFile(L"Invalid parameter in %s: %s\n", function, expression);
}

void apply_start_flags(unsigned int flags)
{
    if (flags & korFileTypes)
        files::create_file_types();
    if (flags & korFaultSignals)
        platform::begin_fault_signals(throw_fault);
    if (flags & korInvalidParameters)
        platform::report_invalid_parameters(log_invalid_parameter);
}

void start(wchar_t const *applicationPath, unsigned int flags, wchar_t const *logFile)
{
    if (s_is_started.exchange(true))
        return;
    app::record_main_thread();
    int const thread_count = app::reset_max_thread_count();
    if (logFile)
        SetLogFile(logFile, logFileCreate, logLevelAll);
    if (IsLogFileEnabled())
        WriteToLogFile("InitBrantisApplication\n%d core will be used by default (use "
                       "OMPSetMaxThreadCount, or define OMP_NUM_THREADS under linux, to change the "
                       "behavior)\n",
            thread_count);
    if (applicationPath)
        SetApplicationPath(applicationPath);
    apply_start_flags(flags);
    SetPluginsDirectory(GetApplicationPath(true), true);
    // Control containers and owner-drawn menus are for a window back end to start.
}

void free_remaining_state()
{
    app::forget_exit_callbacks();
    app::ApplicationState::get().reset();
    files::reset_plugins();
    platform::release_profile();
    kortools::archive::release_pending_exceptions();
}

void end(unsigned int flags)
{
    if (!s_is_started.exchange(false))
        return;
    if (flags & korFaultSignals)
        platform::end_fault_signals();
    if (flags & korFileTypes)
        files::destroy_file_types();
    CloseLogFile();
    app::run_exit_callbacks();
    if (flags & korAllState)
        free_remaining_state();
}

} // namespace

void InitBrantisApplication(
    char const *, wchar_t const *applicationPath, unsigned int flags, wchar_t const *logFile)
{
    start(applicationPath, flags, logFile);
}

void CloseBrantisApplication(unsigned int flags)
{
    end(flags);
}

void InitKorTools(unsigned int flags)
{
    start(nullptr, flags, nullptr);
}

void CloseKorTools(unsigned int flags)
{
    end(flags);
}

HINSTANCE KorToolsResourceHandle()
{
    return static_cast<HINSTANCE>(platform::get_library_module());
}
