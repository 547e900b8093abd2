// SPDX-License-Identifier: MIT
// The date and time records of Windows, as files and callers know them.
#pragma once

struct _SYSTEMTIME {
    unsigned short wYear;      // in full
    unsigned short wMonth;     // 1 to 12
    unsigned short wDayOfWeek; // 0 is Sunday
    unsigned short wDay;
    unsigned short wHour;
    unsigned short wMinute;
    unsigned short wSecond;
    unsigned short wMilliseconds;
};

// 100 nanoseconds since 1601-01-01 00:00:00 UTC, in two halves.
struct _FILETIME {
    unsigned int dwLowDateTime;
    unsigned int dwHighDateTime;
};

typedef struct _SYSTEMTIME *PSYSTEMTIME, *LPSYSTEMTIME;
typedef struct _FILETIME *PFILETIME, *LPFILETIME;
