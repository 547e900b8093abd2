// SPDX-License-Identifier: MIT
// CIntMap: the int-to-int map under a name of its own, for interfaces that declare it in advance.
#pragma once

#include "kortools/core/hash_map.h"

class KORTOOLS_API CIntMap : public CHashMap<int, int, int, CHashMethods<int>> {
public:
    CIntMap();
    CIntMap(CIntMap const &);
    CIntMap(CIntMap &&) noexcept; // leaves an empty map of 23 slots
    CIntMap &operator=(CIntMap const &);
    CIntMap &operator=(CIntMap &&) noexcept;
    ~CIntMap() override;
};
