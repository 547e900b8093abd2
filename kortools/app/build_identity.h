// SPDX-License-Identifier: MIT
// What tells this build of the library from others.
#pragma once

#include "kortools/core/xstring.h"

class CWinApp;

namespace kortools::app {

struct BuildIdentity {
    CXTString<wchar_t> date; // "Apr 15 2024"
    CXTString<wchar_t> time; // "12:02:26"
    int major = -1;
    int minor = -1;
};

BuildIdentity const &get_build_identity();
int get_patch_version();

enum class LaunchMemory { Profile, PreferencesFile };
enum class LaunchRule { AnyBuild, AnyVersion }; // what has to be new

// IsFirstLaunch() of a build; `previous` becomes the one before.
bool is_first_launch(BuildIdentity const &build, CWinApp *app, LaunchMemory memory, LaunchRule rule,
    BuildIdentity &previous);

} // namespace kortools::app
