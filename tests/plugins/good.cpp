// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

namespace {

struct End {
    ~End()
    {
        if (m_count)
            ++*m_count;
    }
    int *m_count = nullptr;
} s_end;

} // namespace

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return number + 1;
}

// Counts there when the library goes.
PLUGIN_EXPORT void InitOther(int *ends);

void InitOther(int *ends)
{
    s_end.m_count = ends;
}
