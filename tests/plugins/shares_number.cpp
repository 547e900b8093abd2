// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

static unsigned int s_version = 0x50000;

template <class T> struct __attribute__((visibility("default"))) Shared {
    static T *s_value;
};
template <class T> T *Shared<T>::s_value = &s_version;

unsigned int BrantisGetPluginVersion()
{
    return *Shared<unsigned int>::s_value;
}
