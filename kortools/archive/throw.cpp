// SPDX-License-Identifier: MIT
#include "kortools/core/throw.h"

#include "kortools/archive/exception.h"

void kortools::core::throw_invalid_argument()
{
    archive::throw_exception(new CXInvalidArgException);
}

void kortools::core::throw_out_of_memory()
{
    archive::throw_exception(new CXMemoryException);
}
