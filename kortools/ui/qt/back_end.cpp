// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/back_end.h"
