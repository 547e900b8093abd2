// SPDX-License-Identifier: MIT
// KORTOOLS_QT_API marks what the library of the Qt back end exports. Its functions need no word for
// those that import them.
#pragma once

#include "kortools/export.h"

#define KORTOOLS_QT_API KORTOOLS_PLUGIN_API
