// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_calls.h"

#include "kortools/archive/exception.h"

#include <condition_variable>
#include <map>
#include <mutex>

namespace kortools::files {
namespace {

struct Calls {
    // Never destroyed: plug-ins may be called and unloaded at the very end of the process.
    static Calls &get()
    {
        static Calls &s_calls = *new Calls;
        return s_calls;
    }

    struct Plugin {
        int running = 0;
        bool is_closed = false;
    };
    std::mutex m_lock; // of everything below
    std::condition_variable m_ended;
    std::map<IoPluginCallback, Plugin> m_plugins; // those that run or are closed
};

thread_local int s_depth = 0; // of this thread's calls

// Counts a call while it lives, unless the plug-in is closed.
class RunningCall {
public:
    explicit RunningCall(IoPluginCallback callback)
        : m_callback(callback)
    {
        Calls &calls = Calls::get();
        std::lock_guard const lock(calls.m_lock);
        Calls::Plugin &plugin = calls.m_plugins[callback];
        m_is_allowed = !plugin.is_closed;
        plugin.running += m_is_allowed;
        s_depth += m_is_allowed;
    }
    RunningCall(RunningCall const &) = delete;
    RunningCall &operator=(RunningCall const &) = delete;
    ~RunningCall()
    {
        if (!m_is_allowed)
            return;
        --s_depth;
        Calls &calls = Calls::get();
        std::lock_guard const lock(calls.m_lock);
        auto const found = calls.m_plugins.find(m_callback);
        if (--found->second.running == 0 && !found->second.is_closed)
            calls.m_plugins.erase(found);
        calls.m_ended.notify_all();
    }
    bool is_allowed() const { return m_is_allowed; }

private:
    IoPluginCallback m_callback;
    bool m_is_allowed = false;
};

CallOutcome call_caught(IoPluginCallback callback, IoPluginMode mode, void *data)
{
    try {
        return callback(mode, data) ? CallOutcome::Done : CallOutcome::Failed;
    } catch (CXException *exception) {
        exception->Delete();
    } catch (...) { // whatever the plug-in throws: the caller has a refusal for it
    }
    return CallOutcome::Threw;
}

} // namespace

CallOutcome call_plugin(IoPluginCallback callback, IoPluginMode mode, void *data)
{
    RunningCall const call(callback);
    return call.is_allowed() ? call_caught(callback, mode, data) : CallOutcome::Closed;
}

void retire_plugin(IoPluginCallback callback)
{
    {
        Calls &calls = Calls::get();
        std::unique_lock lock(calls.m_lock);
        calls.m_plugins[callback].is_closed = true;
        calls.m_ended.wait(lock, [&] { return calls.m_plugins[callback].running == 0; });
    }
    call_caught(callback, ioModeRelease, nullptr);
}

void open_plugin(IoPluginCallback callback)
{
    Calls &calls = Calls::get();
    std::lock_guard const lock(calls.m_lock);
    auto const found = calls.m_plugins.find(callback);
    if (found == calls.m_plugins.end())
        return;
    found->second.is_closed = false;
    if (found->second.running == 0)
        calls.m_plugins.erase(found);
}

bool is_in_plugin()
{
    return s_depth > 0;
}

} // namespace kortools::files
