// SPDX-License-Identifier: MIT
// scoutrix-view on the windows of Windows.
#include "apps/viewer/viewer.h"
#include "kortools/app/start.h"
#include "kortools/platform/terminal.h"
#include "kortools/ui/win32/back_end.h"

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    InitBrantisApplication("scoutrix-view", nullptr, korFileTypes);
    int const code = viewer::run_viewer(
        kortools::platform::get_utf8_arguments(argc, argv), kortools::ui::win32::install_back_end);
    CloseBrantisApplication(korFileTypes | korAllState);
    return code;
}
