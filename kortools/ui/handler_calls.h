// SPDX-License-Identifier: MIT
// What every back end needs to call the handlers of its windows from within the window system,
// through whose frames no exception may pass.
#pragma once

#include <exception>
#include <utility>

namespace kortools::ui {

// Keeps the first exception that leaves a handler, and calls none until it was thrown again. One
// for the thread of the windows.
class HandlerCalls {
public:
    template <class Call> void call(Call &&function) noexcept
    {
        if (m_exception != nullptr)
            return;
        try {
            std::forward<Call>(function)();
        } catch (...) {
            m_exception = std::current_exception();
        }
    }

    // The result of `function`, or `otherwise` when it is not called or throws.
    template <class Call, class Result> Result ask(Call &&function, Result otherwise) noexcept
    {
        call([&] { otherwise = std::forward<Call>(function)(); });
        return otherwise;
    }

    bool has_exception() const { return m_exception != nullptr; }

    // To be called by what served the events, outside the window system's frames.
    void rethrow()
    {
        if (m_exception != nullptr)
            std::rethrow_exception(std::exchange(m_exception, nullptr));
    }

private:
    std::exception_ptr m_exception;
};

} // namespace kortools::ui
