// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

// What a library does on Windows that cannot work here; elsewhere a name that nobody has.
#if defined(_WIN32)
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    return reason != DLL_PROCESS_ATTACH;
}
#else
extern int name_that_nobody_has;
int *s_used = &name_that_nobody_has;
#endif

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return number + 1;
}
