// SPDX-License-Identifier: MIT
#include "kortools/platform/modules.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/posix/loader_text.h"

#include <dlfcn.h>
#include <elf.h>

namespace kortools::platform {

ModuleHandle load_module(wchar_t const *path, std::string &problem)
{
    std::string const native = to_native_path(path);
    ModuleHandle const module
        = native.empty() ? nullptr : dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        char const *const error = native.empty() ? nullptr : dlerror();
        problem = error ? without_path(error, native) : "no such path";
    }
    return module;
}

void unload_module(ModuleHandle module)
{
    dlclose(module);
}

void *find_in_module(ModuleHandle module, char const *name)
{
    return dlsym(module, name);
}

FoundLibrary find_library(std::string const &)
{
    return { true, {} };
}

ModuleKind get_module_kind()
{
#if defined(__x86_64__)
    return { true, EM_X86_64 };
#elif defined(__aarch64__)
    return { true, EM_AARCH64 };
#else
#error "which machine is this?"
#endif
}

std::wstring get_module_key(std::wstring path)
{
    return path;
}

} // namespace kortools::platform
