// SPDX-License-Identifier: MIT
// Plug-ins: libraries that add abilities to the application, and where they lie.
//
// A plug-in exports the version function, `unsigned int BrantisGetPluginVersion()` with C linkage,
// and one or more entry points, which whoever loads it asks for by name. A library is examined
// before any of its code runs in this process; one that is no plug-in, is one of another version or
// fails in any way is refused, silently but for a line in the log, and never looked at again until
// the process ends.
//
// Linux asks each library for its version in a process of its own, the program
// kortools-plugin-probe, so one that crashes or hangs when it is loaded does no harm. The program
// is installed with this library; the environment variable KORTOOLS_PLUGIN_PROBE names another one.
// Windows maps a library without running its start-up code.
//
// All functions may be called by any thread. Of one path, the loads are counted: it stays loaded
// until it was released as often.
//
//   PluginInfo info;
//   if (LoadPlugin(GetPluginsDirectory() + L"noise.dll", "InitNoise", info))
//       info.GetEntry<void (*)()>()();
//   else
//       GetPluginVerdict(GetPluginsDirectory() + L"noise.dll", &reason);
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// A loaded library, as the system's own headers for Windows declare it.
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__ *; // a loaded library

struct PluginInfo {
    HINSTANCE m_module = nullptr; // null: not loaded
    void *m_entry = nullptr;      // the address of the entry point

    template <class Function> Function GetEntry() const
    {
        return reinterpret_cast<Function>(m_entry);
    }
};

// The version that the version function of a plug-in must answer with.
inline constexpr unsigned int pluginVersion = 0x50000;

// Why a library was refused.
enum PluginVerdict : int {
    pluginNotRefused = 0,        // it was loaded, or nobody asked for it yet
    pluginNotFound = 1,          // there is no such file
    pluginNotALibrary = 2,       // something else, or damaged
    pluginWrongMachine = 3,      // a library for another system or processor
    pluginNoVersionFunction = 4, //
    pluginOtherVersion = 5,      //
    pluginNoEntryPoint = 6,      // not the one that was asked for
    pluginMissingDependency = 7, // needs a library that the system does not find
    pluginCrashed = 8,           // when it was loaded or asked for its version
    pluginHung = 9,              // the same
    pluginNotLoaded = 10,        // the system refused, or the library itself did
    pluginNotProbed = 11         // the program that asks libraries for their version does not run
};

// Where plug-ins are looked for; with `appendPluginsFolder` in the folder "Plugins\" there.
KORTOOLS_API void SetPluginsDirectory(
    CXTString<wchar_t> const &dir, bool appendPluginsFolder = false);
KORTOOLS_API CXTString<wchar_t> GetPluginsDirectory(); // as it was set; empty before

// Loads a plug-in and finds its entry point. False, with `info` empty, for a library that is
// refused, now or earlier; then for every entry point. A relative path counts from the current
// directory.
KORTOOLS_API bool LoadPlugin(
    CXTString<wchar_t> const &path, char const *entryName, PluginInfo &info);

// Releases a plug-in that was loaded for the entry point: one of its loads, or every one. Nothing
// for a module that was not, and for one with registered file types (io_plugins.h) whose code is
// running in this thread.
KORTOOLS_API void FreePlugin(HINSTANCE module, char const *entryName, bool everyLoad = false);

// Releases every plug-in that was loaded for the entry point, as often as that was.
KORTOOLS_API void FreePlugins(char const *entryName);

// Why LoadPlugin() refuses the file, and the same as a sentence (empty for pluginNotRefused) with
// the names and numbers that belong to it.
KORTOOLS_API PluginVerdict GetPluginVerdict(
    CXTString<wchar_t> const &path, CXTString<wchar_t> *reason = nullptr);

// How long a library may take to be loaded and to answer with its version, in milliseconds; 5000 at
// first. Returns the one before. There is no limit on Windows.
KORTOOLS_API unsigned int SetPluginProbeLimit(unsigned int milliseconds);
