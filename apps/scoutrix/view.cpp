// SPDX-License-Identifier: MIT
#include "apps/scoutrix/view.h"

#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "kortools/platform/child_program.h"

namespace scoutrix {

int view_files(std::vector<std::string> const &arguments)
{
    std::wstring const viewer = kortools::platform::find_program("scoutrix-view");
    if (viewer.empty())
        kor_apps::fail(L"scoutrix-view is not installed: it is neither beside scoutrix nor in the "
                       L"path");
    auto const code = kortools::platform::run_program(viewer, arguments);
    if (!code)
        kor_apps::fail(kor_apps::to_shown(viewer.c_str()) + L" cannot be started");
    return *code;
}

} // namespace scoutrix
