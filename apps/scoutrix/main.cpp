// SPDX-License-Identifier: MIT
// scoutrix: the sample host. Opens files and imports them into scenes, and shows and changes those.
#include "apps/scoutrix/host.h"
#include "kortools/app/application.h"
#include "kortools/app/start.h"
#include "kortools/platform/terminal.h"

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    InitBrantisApplication(
        "scoutrix", nullptr, korFileTypes | korFaultSignals | korInvalidParameters);
    SetInternalProductName(L"scoutrix"); // also when the program was given another name
    int const code = scoutrix::run_host(kortools::platform::get_utf8_arguments(argc, argv));
    CloseBrantisApplication(korFileTypes | korFaultSignals | korAllState);
    return code;
}
