// SPDX-License-Identifier: MIT
#include "kortools/platform/invalid_parameters.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace kortools::platform {
namespace {

std::atomic<InvalidParameterReport> s_report { nullptr };
_invalid_parameter_handler s_former = nullptr;

void on_invalid_parameter(wchar_t const *expression, wchar_t const *function, wchar_t const *file,
    unsigned int line, std::uintptr_t)
{
    if (InvalidParameterReport const report = s_report)
        report({ expression, function, file, line });
}

// The runtime outlives the library.
struct RestoreAtUnload {
    ~RestoreAtUnload()
    {
        if (s_report)
            _set_invalid_parameter_handler(s_former);
    }
} const s_restore_at_unload;

} // namespace

bool report_invalid_parameters(InvalidParameterReport report)
{
    if (!s_report.exchange(report))
        s_former = _set_invalid_parameter_handler(on_invalid_parameter);
    return true;
}

} // namespace kortools::platform
