// SPDX-License-Identifier: MIT
#include "kortools/app/exit_callbacks.h"

#include "kortools/app/exit_callback_table.h"
#include "kortools/archive/exception.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/throw.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using Callback = void (*)();

constexpr unsigned int table_size = 23; // slots, at first

struct Due {
    Callback callback;
    unsigned int order;
};

struct ExitCallbacks {
    CXCriticalSection m_lock;
    std::optional<CHashMap<Callback, Callback, unsigned int>> m_orders; // made when needed

    std::vector<Due> get_due();
    bool take(Callback callback);
};

// Never destroyed: static objects remove their callbacks when they are.
ExitCallbacks &get_callbacks()
{
    static auto *const s_callbacks = new ExitCallbacks;
    return *s_callbacks;
}

std::vector<Due> ExitCallbacks::get_due()
{
    CXSingleLock const lock(&m_lock, true);
    std::vector<Due> due;
    if (!m_orders)
        return due;
    for (auto const [callback, order] : *m_orders)
        due.push_back({ callback, order });
    if (due.size() != m_orders->GetCount())
        kortools::core::throw_invalid_argument();
    std::ranges::sort(due, {}, &Due::order);
    return due;
}

// False when it was removed meanwhile.
bool ExitCallbacks::take(Callback callback)
{
    CXSingleLock const lock(&m_lock, true);
    return m_orders && m_orders->Remove(callback);
}

void run_quietly(Callback callback)
try {
    callback();
} catch (CXException *exception) {
    exception->Delete();
} catch (...) { // the others have to be called, too
}

} // namespace

void AddApplicationExitCallback(void (*callback)(), unsigned int order)
{
    if (!callback)
        return;
    ExitCallbacks &callbacks = get_callbacks();
    CXSingleLock const lock(&callbacks.m_lock, true);
    if (!callbacks.m_orders)
        callbacks.m_orders.emplace(table_size);
    if (callbacks.m_orders->Insert(callback, order) == 0 && !callbacks.m_orders->IsFound(callback))
        kortools::core::throw_out_of_memory();
}

void RemoveApplicationExitCallback(void (*callback)(), unsigned int)
{
    get_callbacks().take(callback);
}

namespace kortools::app {

void run_exit_callbacks()
{
    ExitCallbacks &callbacks = get_callbacks();
    for (Due const &due : callbacks.get_due()) {
        if (callbacks.take(due.callback))
            run_quietly(due.callback);
    }
}

void forget_exit_callbacks()
{
    ExitCallbacks &callbacks = get_callbacks();
    CXSingleLock const lock(&callbacks.m_lock, true);
    callbacks.m_orders.reset();
}

} // namespace kortools::app
