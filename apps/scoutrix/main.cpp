// SPDX-License-Identifier: MIT
// scoutrix: the sample host. Imports files into a scene, and shows and changes what a scene holds.
#include "apps/scoutrix/host.h"
#include "kortools/platform/terminal.h"

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    return scoutrix::run_host(kortools::platform::get_utf8_arguments(argc, argv));
}
