// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/back_end.h"
