// SPDX-License-Identifier: MIT
// The file types that the host can load: those of the plug-ins and, behind them, its own.
#pragma once

#include "apps/scene/scene.h"
#include "kortools/files/file_types.h"

namespace scoutrix {

// The library's plug-ins directory if it is there, else where plug-ins lie beside a program that
// was built or installed with them.
Text find_plugin_folder();

// They are registered as long as this lives. No document is being loaded when it goes.
class KnownTypes {
public:
    explicit KnownTypes(Text const &plugin_folder); // empty: no plug-ins
    ~KnownTypes();
    KnownTypes(KnownTypes const &) = delete;
    KnownTypes &operator=(KnownTypes const &) = delete;
};

// The type of a path as that of the host's own readers (importer.h); false when it has none.
bool find_own_type(Text const &path, CFileExt &type);

} // namespace scoutrix
