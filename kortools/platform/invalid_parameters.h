// SPDX-License-Identifier: MIT
// Arguments that a function of the C runtime library does not accept.
#pragma once

namespace kortools::platform {

// What the runtime tells of the call, null where it tells nothing, as release builds do.
struct InvalidParameter {
    wchar_t const *expression;
    wchar_t const *function;
    wchar_t const *file;
    unsigned int line;
};
using InvalidParameterReport = void (*)(InvalidParameter const &parameter);

// From now on the runtime calls `report` instead of ending the process; after it, the function
// fails with EINVAL. False where the runtime reports nothing, as on Linux, where such functions
// just fail.
bool report_invalid_parameters(InvalidParameterReport report);

} // namespace kortools::platform
