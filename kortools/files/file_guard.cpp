// SPDX-License-Identifier: MIT
#include "kortools/files/file_guard.h"

#include "kortools/files/guarded_call.h"
#include "kortools/files/path_kind.h"

#include <utility>

using kortools::files::get_limit;
using kortools::platform::CallGuard;

namespace kortools::files {

unsigned int get_limit(CXTString<wchar_t> const &path, unsigned int *timeout, bool always)
{
    constexpr unsigned int every_path = 0x80000000;
    if (!timeout || *timeout == 0 || *timeout == late_mark)
        return 0;
    bool const is_forced = (*timeout & every_path) != 0;
    *timeout &= ~every_path;
    return always || is_forced || is_on_share(path) ? *timeout : 0;
}

} // namespace kortools::files

namespace {

bool create(CXTString<wchar_t> const &path, unsigned int *timeout, bool always, void *&guard)
{
    unsigned int const limit = get_limit(path, timeout, always);
    guard = limit == 0 ? nullptr : new CallGuard(limit, timeout);
    return guard != nullptr;
}

} // namespace

bool fileTimeOut(
    IoTimeOut step, CXTString<wchar_t> const &path, unsigned int *timeout, void *&guard)
{
    auto *const call_guard = static_cast<CallGuard *>(guard);
    switch (step) {
    case ioTimeOutCreate:
    case ioTimeOutCreateAlways:
        return create(path, timeout, step == ioTimeOutCreateAlways, guard);
    case ioTimeOutStart:
        return call_guard && call_guard->start();
    case ioTimeOutEnd:
        return call_guard && call_guard->end();
    case ioTimeOutDestroy:
        delete call_guard;
        return std::exchange(guard, nullptr) != nullptr;
    }
    return false;
}
