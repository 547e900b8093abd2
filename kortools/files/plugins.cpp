// SPDX-License-Identifier: MIT
#include "kortools/files/plugins.h"

#include "kortools/app/log.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/path_text.h"
#include "kortools/files/plugin_inspection.h"
#include "kortools/files/plugin_modules.h"
#include "kortools/files/relative_path.h"
#include "kortools/platform/current_directory.h"
#include "kortools/platform/modules.h"
#include "kortools/platform/version_probe.h"
#include "kortools/text/string_table.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>
#include <vector>

using namespace kortools::files;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;
using Name = CXTString<char>;

constexpr unsigned int table_size = 23;     // slots, at first
constexpr unsigned int text_refused = 5572; // "Plug-in refused: "
constexpr unsigned int default_limit_ms = 5000;

struct Plugins {
    // Never destroyed: plug-ins may be released by static objects of the program.
    static Plugins &get()
    {
        static Plugins &s_plugins = *new Plugins;
        return s_plugins;
    }

    // Held from the first look at a library to its load, as a library that is only mapped cannot be
    // loaded by another thread; taken before m_lock.
    CXCriticalSection m_load_lock;

    CXCriticalSection m_lock; // of everything below; no code of a plug-in runs under it
    String m_directory;
    CHashMap<String, String const &, Refusal> m_refused { table_size }; // by key of the path
    CHashMap<Name, Name const &, std::vector<PluginInfo>> m_loaded { table_size }; // each load
};

constinit std::atomic<unsigned int> s_limit_ms { default_limit_ms };
constinit std::atomic<PluginReleaseHook> s_release_hook { nullptr };

String make_absolute(String const &path)
{
    String absolute = fileMakeAbsolutePath(platform::get_current_directory(), converted(path));
    fileMakePathShortest(absolute);
    return absolute;
}

String make_key(String const &absolute_path)
{
    return platform::get_module_key(std::wstring(view_of(absolute_path)));
}

bool is_refused(String const &key)
{
    Plugins &plugins = Plugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    return plugins.m_refused.IsFound(key) != 0;
}

void remember(String const &path, String const &key, Refusal const &refusal)
{
    {
        Plugins &plugins = Plugins::get();
        CXSingleLock const lock(&plugins.m_lock, true);
        plugins.m_refused.Insert(key, refusal);
    }
    String const line = xLoadString(text_refused) + describe_refusal(path, refusal);
    WriteToLogFile(L"%s\n", line.GetConstBuffer());
}

void remember(Name const &entry_name, PluginInfo const &info)
{
    Plugins &plugins = Plugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    if (std::vector<PluginInfo> *const loads = plugins.m_loaded.Find(entry_name))
        loads->push_back(info);
    else
        plugins.m_loaded.Insert(entry_name, std::vector<PluginInfo>(1, info));
}

Refusal load_module(PluginInspection const &inspection, String const &path, char const *entry_name,
    PluginInfo &info)
{
    std::string problem;
    platform::ModuleHandle const module = platform::load_module(path.GetConstBuffer(), problem);
    if (!module)
        return inspection.explain_failure(problem);
    void *const entry = platform::find_in_module(module, entry_name);
    if (!entry) {
        platform::unload_module(module);
        return { pluginNoEntryPoint, entry_name };
    }
    info = { static_cast<HINSTANCE>(module), entry };
    return {};
}

enum class MissingEntry { Refuse, PassOver };

bool load(platform::VersionProbe &probe, String const &path, char const *entry_name,
    PluginInfo &info, MissingEntry missing_entry)
{
    info = {};
    if (path.IsEmpty() || !entry_name)
        return false;
    String const place = make_absolute(path);
    String const key = make_key(place);
    CXSingleLock const loading(&Plugins::get().m_load_lock, true);
    if (is_refused(key))
        return false;
    PluginInspection inspection(place, entry_name);
    Refusal refusal = inspection.examine(probe, s_limit_ms);
    if (refusal.verdict == pluginNotRefused)
        refusal = load_module(inspection, place, entry_name, info);
    if (refusal.verdict == pluginNoEntryPoint && missing_entry == MissingEntry::PassOver)
        return false;
    if (refusal.verdict != pluginNotRefused) {
        remember(place, key, refusal);
        return false;
    }
    remember(entry_name, info);
    return true;
}

struct Taken {
    PluginInfo info;
    bool is_last; // of its library, for the entry point
};

// Takes the loads that `is_meant` tells out of the list, the latest one first.
template <class Predicate>
std::vector<Taken> take(char const *entry_name, bool every_load, Predicate is_meant)
{
    std::vector<Taken> taken;
    Plugins &plugins = Plugins::get();
    CXSingleLock const loading(&plugins.m_load_lock, true);
    CXSingleLock const lock(&plugins.m_lock, true);
    std::vector<PluginInfo> *const loads = entry_name ? plugins.m_loaded.Find(entry_name) : nullptr;
    if (!loads)
        return taken;
    for (std::size_t i = loads->size(); i-- > 0 && (every_load || taken.empty());) {
        if (!is_meant((*loads)[i]))
            continue;
        PluginInfo const info = (*loads)[i];
        loads->erase(loads->begin() + static_cast<std::ptrdiff_t>(i));
        bool const is_last
            = std::ranges::find(*loads, info.m_module, &PluginInfo::m_module) == loads->end();
        taken.push_back({ info, is_last });
    }
    if (loads->empty())
        plugins.m_loaded.Remove(entry_name);
    return taken;
}

void release(std::vector<Taken> const &loads, char const *entry_name)
{
    for (auto const &[info, is_last] : loads) {
        PluginReleaseHook const hook = is_last ? s_release_hook.load() : nullptr;
        if (hook && !hook(info, entry_name))
            remember(entry_name, info);
        else
            platform::unload_module(info.m_module);
    }
}

} // namespace

void SetPluginsDirectory(CXTString<wchar_t> const &dir, bool appendPluginsFolder)
{
    String directory = dir;
    if (appendPluginsFolder) {
        fileSlashTerminate(directory);
        directory += L"Plugins\\";
    }
    Plugins &plugins = Plugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    plugins.m_directory = directory;
}

CXTString<wchar_t> GetPluginsDirectory()
{
    Plugins &plugins = Plugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    return plugins.m_directory;
}

bool LoadPlugin(CXTString<wchar_t> const &path, char const *entryName, PluginInfo &info)
{
    platform::VersionProbe probe;
    return load(probe, path, entryName, info, MissingEntry::Refuse);
}

void FreePlugin(HINSTANCE module, char const *entryName, bool everyLoad)
{
    auto const is_meant = [&](PluginInfo const &info) { return info.m_module == module; };
    release(take(entryName, everyLoad, is_meant), entryName);
}

void FreePlugins(char const *entryName)
{
    release(take(entryName, true, [](PluginInfo const &) { return true; }), entryName);
}

PluginVerdict GetPluginVerdict(CXTString<wchar_t> const &path, CXTString<wchar_t> *reason)
{
    Refusal refusal;
    String const place = path.IsEmpty() ? path : make_absolute(path);
    {
        Plugins &plugins = Plugins::get();
        CXSingleLock const lock(&plugins.m_lock, true);
        plugins.m_refused.Find(make_key(place), refusal);
    }
    if (reason)
        *reason = describe_refusal(place, refusal);
    return refusal.verdict;
}

unsigned int SetPluginProbeLimit(unsigned int milliseconds)
{
    return s_limit_ms.exchange(milliseconds);
}

namespace kortools::files {

PluginScan::PluginScan()
    : m_probe(std::make_unique<platform::VersionProbe>())
{
}

PluginScan::~PluginScan() = default;

bool PluginScan::load(CXTString<wchar_t> const &path, char const *entry_name, PluginInfo &info)
{
    return ::load(*m_probe, path, entry_name, info, MissingEntry::PassOver);
}

CXCriticalSection &get_plugin_load_lock()
{
    return Plugins::get().m_load_lock;
}

void set_plugin_release_hook(PluginReleaseHook hook)
{
    s_release_hook = hook;
}

void reset_plugins()
{
    Plugins &plugins = Plugins::get();
    std::vector<Name> entry_names;
    {
        CXSingleLock const lock(&plugins.m_lock, true);
        for (auto const &[name, loads] : plugins.m_loaded)
            entry_names.push_back(name);
        plugins.m_refused = CHashMap<String, String const &, Refusal>(table_size);
        plugins.m_directory.Empty();
    }
    for (Name const &name : entry_names)
        FreePlugins(name.GetConstBuffer());
}

} // namespace kortools::files
