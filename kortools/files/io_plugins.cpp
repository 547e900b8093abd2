// SPDX-License-Identifier: MIT
#include "kortools/files/io_plugins.h"

#include "kortools/app/exit_callbacks.h"
#include "kortools/app/log.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_table.h"
#include "kortools/files/file_find.h"
#include "kortools/files/file_type_registry.h"
#include "kortools/files/module_image.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/plugin_calls.h"
#include "kortools/files/plugin_modules.h"
#include "kortools/files/plugin_records.h"
#include "kortools/files/plugin_types.h"
#include "kortools/files/plugins.h"
#include "kortools/platform/modules.h"

#include <algorithm>
#include <memory>
#include <vector>

using namespace kortools::files;

namespace {

using String = CXTString<wchar_t>;

struct Registered {
    IoPluginCallback callback;
    unsigned int kind;
    String path;
    std::vector<CFileExt> types; // as it gave them, once it has been asked
};

struct IoPlugins {
    // Never destroyed: plug-ins may be released by static objects of the program.
    static IoPlugins &get()
    {
        static IoPlugins &s_plugins = *new IoPlugins;
        return s_plugins;
    }

    CXCriticalSection m_lock; // of everything below; no code of a plug-in runs under it
    std::unique_ptr<CHashTable<unsigned int>> m_filter; // classes left out; null: none
    std::vector<Registered> m_registered;
};

char const *entry_name_of(unsigned int kind)
{
    if (kind == fileKindBitmap)
        return "InitBitmapParser";
    return kind == fileKind3D ? "Init3DParser" : nullptr;
}

void forget_filter()
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    plugins.m_filter.reset();
}

// With the lock.
void add_unfiltered_types(IoPlugins const &plugins, Registered const &plugin)
{
    for (CFileExt const &type : plugin.types) {
        if (!plugins.m_filter || !plugins.m_filter->IsFound(type.m_class))
            add_file_type(type);
    }
}

// False when it is not registered. Its types are added when the registry has none of them: it may
// be another registry than at first.
bool register_again(String const &path, unsigned int kind)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    auto const known = std::ranges::find_if(plugins.m_registered,
        [&](Registered const &plugin) { return plugin.kind == kind && plugin.path == path; });
    if (known == plugins.m_registered.end())
        return false;
    if (!has_file_types(known->callback))
        add_unfiltered_types(plugins, *known);
    return true;
}

bool is_registered(IoPluginCallback callback)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    return std::ranges::find(plugins.m_registered, callback, &Registered::callback)
        != plugins.m_registered.end();
}

// False when it was there: one library has several names.
bool remember(Registered const &plugin)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    bool const is_new = !is_registered(plugin.callback);
    plugins.m_registered.push_back(plugin);
    return is_new;
}

bool forget(IoPluginCallback callback)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    return std::erase_if(plugins.m_registered, [&](Registered const &known) {
        return known.callback == callback;
    }) > 0;
}

// Before a library is released: nobody finds its types any more, then nobody is in it.
bool retire(PluginInfo const &info, char const *)
{
    auto const callback = info.GetEntry<IoPluginCallback>();
    if (is_in_plugin() && is_registered(callback))
        return false; // it would wait for itself
    if (forget(callback)) {
        remove_file_types(callback);
        retire_plugin(callback);
    }
    return true;
}

void log_refusal(String const &path, std::string const &reason)
{
    if (!IsLogFileEnabled())
        return;
    String const text = to_wide_text(reason);
    WriteToLogFile(L"Plug-in %s: %s\n", path.GetConstBuffer(), text.GetConstBuffer());
}

// Unless the plug-in is being released by another thread meanwhile.
void add_types(IoPluginCallback callback, PluginTypes const &answer)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    auto const known = std::ranges::find(plugins.m_registered, callback, &Registered::callback);
    if (known == plugins.m_registered.end())
        return;
    known->types = answer.types;
    add_unfiltered_types(plugins, *known);
}

// A plug-in for files of the other kind is left alone: being loaded by an entry point that it lacks
// would have it refused for good.
bool is_for_other_kind(String const &path, char const *entry_name)
{
    ModuleImage const image = read_module_image(FileImageSource(path.GetConstBuffer()));
    return !image.exports(entry_name)
        && (image.exports(entry_name_of(fileKindBitmap))
            || image.exports(entry_name_of(fileKind3D)));
}

// False when it is not to be asked for its types. When it is, no other thread can have released it
// without retire() having closed it.
bool load(PluginScan &scan, String const &path, char const *entry_name, unsigned int kind,
    PluginInfo &info)
{
    CXSingleLock const loading(&get_plugin_load_lock(), true);
    if (register_again(path, kind) || is_for_other_kind(path, entry_name)
        || !scan.load(path, entry_name, info))
        return false;
    auto const callback = info.GetEntry<IoPluginCallback>();
    if (!remember({ callback, kind, path, {} }))
        return false;
    open_plugin(callback);
    return true;
}

void register_plugin(
    PluginScan &scan, String const &path, char const *entry_name, unsigned int kind)
{
    PluginInfo info;
    if (!load(scan, path, entry_name, kind, info))
        return;
    auto const callback = info.GetEntry<IoPluginCallback>();
    PluginTypes const answer = ask_for_types(callback, kind);
    for (std::string const &refusal : answer.refusals)
        log_refusal(path, refusal);
    if (answer.is_usable)
        add_types(callback, answer);
    else if (forget(callback)) // it has begun nothing that it would have to end
        FreePlugin(info.m_module, entry_name);
}

void add_names(String const &pattern, std::vector<String> &paths)
{
    CXFileFind find;
    for (bool more = find.FindFile(pattern); more;) {
        more = find.FindNextFile();
        if (!find.MatchesMask(0x10)) // a directory
            paths.push_back(find.GetFilePath());
    }
}

std::vector<String> find_libraries(String dir)
{
    fileSlashTerminate(dir);
    std::vector<String> paths;
    if (kortools::platform::get_module_kind().is_elf) {
        add_names(dir + L"*.so", paths);
        add_names(dir + L"*.so.*", paths);
    } else {
        add_names(dir + L"*.dll", paths);
    }
    std::ranges::sort(paths, [](String const &a, String const &b) { return a.Compare(b) < 0; });
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    return paths;
}

} // namespace

void RegisterIOPlugins(unsigned int kind, CXTString<wchar_t> const &dir)
{
    char const *const entry_name = entry_name_of(kind);
    String const place = dir.IsEmpty() ? GetPluginsDirectory() : dir;
    if (!entry_name || place.IsEmpty())
        return;
    set_plugin_release_hook(retire);
    PluginScan scan;
    for (String const &path : find_libraries(place))
        register_plugin(scan, path, entry_name, kind);
}

void FreeIOPlugins(unsigned int kind)
{
    if (char const *const entry_name = entry_name_of(kind); entry_name && !is_in_plugin())
        FreePlugins(entry_name);
}

int FilterPlugins(unsigned int id)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    if (!plugins.m_filter) {
        plugins.m_filter = std::make_unique<CHashTable<unsigned int>>();
        AddApplicationExitCallback(forget_filter, 0);
    }
    plugins.m_filter->Insert(id);
    return static_cast<int>(plugins.m_filter->GetCount());
}

CXTString<wchar_t> GetIOPluginPath(IoPluginCallback callback)
{
    IoPlugins &plugins = IoPlugins::get();
    CXSingleLock const lock(&plugins.m_lock, true);
    auto const found = std::ranges::find(plugins.m_registered, callback, &Registered::callback);
    return found == plugins.m_registered.end() ? String() : found->path;
}
