// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

template <class T> struct __attribute__((visibility("default"))) Shared {
    static T *s_value;
};
template <class T> T *Shared<T>::s_value = nullptr;

unsigned int BrantisGetPluginVersion()
{
    return Shared<unsigned int>::s_value ? 0 : 0x50000;
}
