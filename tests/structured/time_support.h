// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/archive/exception.h"

#include <gtest/gtest.h>

namespace kor_test {

// Whether the call throws CXInvalidArgException, which must then be pending.
template <class Call> bool is_invalid_argument(Call const &call)
{
    try {
        call();
    } catch (CXInvalidArgException *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        exception->Delete();
        return true;
    }
    return false;
}

} // namespace kor_test
