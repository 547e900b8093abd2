// SPDX-License-Identifier: MIT
// scoutrix: the sample host. Imports files into a scene, and shows and changes what a scene holds.
#include "apps/scoutrix/host.h"
#include "kortools/app/application.h"
#include "kortools/platform/terminal.h"

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    SetInternalProductName(L"scoutrix"); // also when the program was given another name
    return scoutrix::run_host(kortools::platform::get_utf8_arguments(argc, argv));
}
