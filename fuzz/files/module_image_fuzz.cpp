// SPDX-License-Identifier: MIT
// A file that says it is a library: whatever is read from it lies inside of what was read.
#include "kortools/files/module_image.h"

#include <cstdlib>

namespace {

using namespace kortools::files;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    ModuleImage const image
        = read_module_image(MemoryImageSource({ reinterpret_cast<char const *>(bytes), size }));
    check(image.names.size() <= size + 1);
    check(image.needed.size() <= max_image_entries);
    for (std::string const &name : image.needed)
        check(name.size() <= max_needed_name);
    for (std::uint32_t const start : image.exported) {
        check(start < image.names.size());
        check(image.exports(image.names.c_str() + start));
        if (start % 64 == 0) // each takes a while when there are many
            break;
    }
    check(!describe_machine(image).empty());
    return 0;
}
