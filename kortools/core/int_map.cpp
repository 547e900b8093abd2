// SPDX-License-Identifier: MIT
#include "kortools/core/int_map.h"

CIntMap::CIntMap() = default;
CIntMap::CIntMap(CIntMap const &) = default;
CIntMap::CIntMap(CIntMap &&) noexcept = default;
CIntMap &CIntMap::operator=(CIntMap const &) = default;
CIntMap &CIntMap::operator=(CIntMap &&) noexcept = default;
CIntMap::~CIntMap() = default;
