// SPDX-License-Identifier: MIT
// The application's log: one text file for the whole process, which every thread may write to.
//
// A line is in the file, for other programs too, when WriteToLogFile() returns, however the process
// ends afterwards. The file is UTF-8 with a mark (one that is appended to keeps its encoding), has
// the system's line ends, may be read by others while it is open, and is not inherited by child
// processes.
//
// Each thread has an indentation, LogFileAddTab(), by which its lines are moved to the right and
// measured against the level. The main thread's (GetApplicationMainThreadID()), while it has one,
// takes the place of every other thread's: what threads write while it is inside nested work
// belongs to that work.
//
// Any thread may call any function at any time. None throws, and none changes the thread's pending
// exception or last OS error, except when memory is exhausted: a log never makes the application
// fail. What cannot be written, such as a line for a full disk, is left out whole.
//
//   SetLogFile(L"scoutrix.log", logFileCreate);
//   WriteToLogFile(L"loading %s\n", path.GetConstBuffer());
//   LogFileAddTab(true);
//   WriteToLogFile("%d meshes\n", count); // one tab to the right
//   LogFileAddTab(false);
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

enum LogFileMode : int {
    logFileCreate = 0, // truncates the file; also what unknown numbers do
    logFileAppend = 1, // goes on at the end of the file, which may be new
    logFileNew = 2     // if the file exists, takes the next name: "log (1).txt", "log (2).txt" ...
};

// How deep a line may be indented (in tabs) to be written, or one of these.
inline constexpr unsigned int logLevelAll = 0xFFFFFFFF;
inline constexpr unsigned int logLevelNone = 0xFFFFFFFE;

// Opens the log and writes a header with the application's name and the time. False, with nothing
// changed, while a log is open; false, with the level stored, when the file cannot be opened. A
// path without a directory lies in the application's folder among the user's data.
KORTOOLS_API bool SetLogFile(
    CXTString<wchar_t> const &path, LogFileMode mode, unsigned int level = logLevelAll);

// Writes a text by the rules of CXTString::Format(), behind the tabs of the indentation. No line
// end is added. Nothing when no log is open, for a null format, and for an indentation above the
// level.
KORTOOLS_API void WriteToLogFile(wchar_t const *format, ...);
KORTOOLS_API void WriteToLogFile(char const *format, ...);

// Sets the level, of an open log and of the next one unless SetLogFile() gives another. Returns the
// one before. Waits for nobody.
KORTOOLS_API unsigned int SetLogLevel(unsigned int level);

// Is there an open log, with a level that lets the calling thread's own indentation pass? The main
// thread's indentation is not looked at, so WriteToLogFile() may decide otherwise.
KORTOOLS_API bool IsLogFileEnabled();

// Makes the calling thread's indentation deeper or flatter by one tab and returns the new one, at
// least 0. Always 0 while no log is open.
KORTOOLS_API unsigned int LogFileAddTab(bool add);

// Keeps other threads out of the log from LogLock(true) to the same thread's LogLock(false), so
// that several lines stay together. Pairs may be nested. A surplus LogLock(false) is ignored.
KORTOOLS_API void LogLock(bool lock);

// Closes the log and forgets all indentations. False when none is open.
KORTOOLS_API bool CloseLogFile();
