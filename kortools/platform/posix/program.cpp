// SPDX-License-Identifier: MIT
#include "kortools/platform/program.h"

#include "kortools/platform/file_system.h"

#include <dlfcn.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace kortools::platform {

std::wstring get_program_path()
{
    std::string path(256, '\0');
    while (true) {
        ssize_t const size = readlink("/proc/self/exe", path.data(), path.size());
        if (size < 0)
            return {};
        if (static_cast<std::size_t>(size) < path.size()) {
            path.resize(static_cast<std::size_t>(size));
            break;
        }
        path.resize(path.size() * 2); // it may have been cut
    }
    // What the kernel adds when the file has been replaced, as updates do, or deleted.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted) && access(path.c_str(), F_OK) != 0)
        path.resize(path.size() - deleted.size());
    return from_native_path(path);
}

void *get_library_module()
{
    static char const s_inside = 0;
    Dl_info library {};
    void *module = nullptr;
    if (dladdr(&s_inside, &library) != 0 && library.dli_fname)
        module = dlopen(library.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (!module)
        module = dlopen(nullptr, RTLD_LAZY);
    if (module)
        dlclose(module); // the library is held by whoever called this
    return module;
}

std::wstring get_system_name()
{
    utsname system {};
    if (uname(&system) != 0)
        return L"Linux";
    std::string const name = std::string(system.sysname) + ' ' + system.release;
    return { name.begin(), name.end() }; // ASCII
}

} // namespace kortools::platform
