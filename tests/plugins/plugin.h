// SPDX-License-Identifier: MIT
// The names that the test's libraries export.
#pragma once

#include "kortools/export.h"

#if defined(_WIN32)
#define PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

PLUGIN_EXPORT unsigned int BrantisGetPluginVersion();
PLUGIN_EXPORT int InitTest(int number);
