// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

// Tells its process first, in the file that the environment names.
[[gnu::constructor]] static void hang()
{
    if (char const *const path = std::getenv("KOR_TEST_PROCESS_FILE")) {
        std::FILE *const file = std::fopen(path, "w");
        std::fprintf(file, "%d.", static_cast<int>(getpid()));
        std::fclose(file);
    }
    while (true)
        pause();
}

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return number;
}
