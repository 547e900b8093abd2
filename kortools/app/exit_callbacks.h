// SPDX-License-Identifier: MIT
// What an application and its plug-ins want to be called for when the library ends.
//
// Everything may be called by any thread.
//
//   AddApplicationExitCallback(SaveRecentFiles, 10);
//   AddApplicationExitCallback(CloseDatabase, 20); // after it
#pragma once

#include "kortools/export.h"

// CloseBrantisApplication() and CloseKorTools() call each callback once, by ascending order (0 is
// the first, 0xFFFFFFFF the last; in any sequence those of one order), and forget it. No lock is
// held then and the log is closed. A callback may add others, which wait for the next end, and
// remove those that are still to come; what it throws is deleted. A callback that is added twice is
// called once, in its last order; null is ignored.
KORTOOLS_API void AddApplicationExitCallback(void (*callback)(), unsigned int order);

// Whatever order is given. Nothing when it was not added.
KORTOOLS_API void RemoveApplicationExitCallback(void (*callback)(), unsigned int order = 0);
