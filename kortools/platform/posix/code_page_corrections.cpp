// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/code_page_corrections.h"

#include "kortools/platform/posix/corrections_iso.h"
#include "kortools/platform/posix/corrections_pc.h"
#include "kortools/platform/posix/corrections_windows.h"

#include <algorithm>
#include <span>

namespace kortools::platform {

CodePageCorrections const *find_corrections(unsigned int page)
{
    using Group = std::span<CodePageCorrections const>;
    for (Group const group :
        { Group(windows_corrections), Group(pc_corrections), Group(iso_corrections) }) {
        auto const known = std::ranges::find(group, page, &CodePageCorrections::page);
        if (known != group.end())
            return &*known;
    }
    return nullptr;
}

} // namespace kortools::platform
