// SPDX-License-Identifier: MIT
#include "kortools/core/hash_map.h"

KOR_EXPORT_TEMPLATE(kortools::core::HashCore<int, int, CHashMethods<int>>);
KOR_EXPORT_TEMPLATE(CHashMap<int, int, int, CHashMethods<int>>);
