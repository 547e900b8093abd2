// SPDX-License-Identifier: MIT
// Plug-ins that load and save files: their types are registered beside the library's own
// (file_types.h), with the plug-in's entry point as m_callback. io_plugin.h is the plug-in's side
// of it, plugin_files.h loads and saves through them.
//
//   FilterPlugins(fileMakeCode("PSD "));          // this one we have ourselves
//   RegisterIOPlugins(fileKindBitmap, L"");
//   RegisterIOPlugins(fileKind3D, L"");
//   ...
//   FreeIOPlugins(fileKind3D);
//
// Everything may be called by any thread. What goes wrong with a plug-in is in the log, not in a
// result: it is left out.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"
#include "kortools/files/io_plugin_mode.h"

// Loads the plug-ins of a directory, by default the plug-ins directory, and registers the types of
// those that have the entry point of the kind: "InitBitmapParser" for fileKindBitmap,
// "Init3DParser" for fileKind3D; other kinds are ignored. Without a registry of file types nothing
// is registered. Looks for the system's dynamic libraries (*.dll; on Linux *.so and *.so.*), by
// name, so that of two plug-ins with the same extension the same one is always first. One that is
// registered already is left alone, unless the registry has lost its types.
KORTOOLS_API void RegisterIOPlugins(unsigned int kind, CXTString<wchar_t> const &dir);

// Takes the types of the kind's plug-ins out of the registry, waits until no file is being loaded
// or saved by them, and unloads them. Does nothing when called by one of them.
KORTOOLS_API void FreeIOPlugins(unsigned int kind);

// Leaves out the types of a class from now on; those that are registered stay. Returns how many
// classes are left out. Forgotten when the application ends.
KORTOOLS_API int FilterPlugins(unsigned int id);

// The path of the plug-in that has registered types with this entry point (CFileExt::m_callback);
// empty when there is none.
KORTOOLS_API CXTString<wchar_t> GetIOPluginPath(IoPluginCallback callback);
