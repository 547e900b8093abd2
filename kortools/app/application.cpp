// SPDX-License-Identifier: MIT
#include "kortools/app/application.h"

#include "kortools/app/application_paths.h"
#include "kortools/app/application_state.h"
#include "kortools/app/product_version.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/relative_path.h"
#include "kortools/platform/current_directory.h"
#include "kortools/platform/program.h"

using kortools::app::ApplicationState;

namespace platform = kortools::platform;

void SetApplicationPath(CXTString<wchar_t> const &path)
{
    CXTString<wchar_t> absolute;
    if (!path.IsEmpty())
        absolute = fileMakeAbsolutePath(platform::get_current_directory(), path);
    ApplicationState &state = ApplicationState::get();
    CXSingleLock const lock(&state.m_lock, true);
    state.m_path = absolute;
    state.forget_paths();
}

CXTString<wchar_t> GetApplicationPath(bool directoryOnly)
{
    CXTString<wchar_t> path;
    {
        ApplicationState &state = ApplicationState::get();
        CXSingleLock const lock(&state.m_lock, true);
        path = state.m_path;
    }
    if (path.IsEmpty())
        path = platform::get_program_path();
    return directoryOnly ? fileStripName(path) : path;
}

CXTString<wchar_t> GetApplicationName(bool removeExtension)
{
    return fileStripPath(GetApplicationPath(), removeExtension);
}

void SetInternalProductName(CXTString<wchar_t> const &name, int version, bool makeDirectory)
{
    {
        ApplicationState &state = ApplicationState::get();
        CXSingleLock const lock(&state.m_lock, true);
        state.m_product_name = name;
        state.m_product_version = version;
        state.forget_paths();
    }
    if (makeDirectory)
        GetUserApplicationDataPath();
}

CXTString<wchar_t> GetInternalProductName(bool withVersion)
{
    ApplicationState &state = ApplicationState::get();
    CXSingleLock const lock(&state.m_lock, true);
    CXTString<wchar_t> name = state.m_product_name;
    if (name.IsEmpty())
        name = GetApplicationName(true);
    if (withVersion && state.m_product_version != 0) {
        CXTString<wchar_t> version;
        version.Format(L" %d", state.m_product_version);
        name += version;
    }
    return name;
}

int kortools::app::get_product_version()
{
    ApplicationState &state = ApplicationState::get();
    CXSingleLock const lock(&state.m_lock, true);
    return state.m_product_version;
}

void EnablePreferencesSaving(bool enable)
{
    ApplicationState::get().m_saves_preferences = enable;
}

bool IsPreferencesSavingEnabled()
{
    return ApplicationState::get().m_saves_preferences;
}

namespace kortools::app {

ApplicationState &ApplicationState::get()
{
    // Never destroyed: a log, say, may ask for paths at the very end.
    static ApplicationState &s_state = *new ApplicationState;
    return s_state;
}

void ApplicationState::forget_paths()
{
    for (CXTString<wchar_t> &path : m_common_data)
        path.Empty();
    for (CXTString<wchar_t> &path : m_user_data)
        path.Empty();
}

void ApplicationState::reset()
{
    CXSingleLock const lock(&m_lock, true);
    m_path.Empty();
    m_product_name.Empty();
    m_product_version = 0;
    m_user_preferences.Empty();
    m_common_preferences.Empty();
    m_saves_preferences = true;
    forget_paths();
}

} // namespace kortools::app
