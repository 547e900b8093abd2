// SPDX-License-Identifier: MIT
// The versions are definitions of the build. The compiler takes date and time from the variable
// SOURCE_DATE_EPOCH when that is set.
#include "kortools/app/build_identity.h"

namespace kortools::app {

BuildIdentity const &get_build_identity()
{
    static BuildIdentity const s_identity { CXTString<wchar_t>(__DATE__),
        CXTString<wchar_t>(__TIME__), KORTOOLS_VERSION_MAJOR, KORTOOLS_VERSION_MINOR };
    return s_identity;
}

int get_patch_version()
{
    return KORTOOLS_VERSION_PATCH;
}

} // namespace kortools::app
