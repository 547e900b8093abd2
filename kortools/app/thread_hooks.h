// SPDX-License-Identifier: MIT
#pragma once

class CXThread;

namespace kortools::platform {
class NativeThread;
}

namespace kortools::app {

// What a class derived from CXThread does around the body, which its own derived classes cannot
// forget to call.
struct ThreadHooks {
    void (*announce)(CXThread &, kortools::platform::NativeThread const &); // before it may run
    void (*enter)(CXThread &); // on the thread, before the body
    void (*leave)(CXThread &); // on the thread, after the body
};

} // namespace kortools::app
