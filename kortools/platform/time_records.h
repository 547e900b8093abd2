// SPDX-License-Identifier: MIT
// SYSTEMTIME and FILETIME. On Windows they are those of <windows.h>, which a user who looks into
// them includes; here they are only declared. Elsewhere they are defined here, with the same
// layout.
#pragma once

#ifndef _WIN32
#include "kortools/platform/posix/time_records.h"
#endif

typedef struct _SYSTEMTIME SYSTEMTIME;
typedef struct _FILETIME FILETIME;
