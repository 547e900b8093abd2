// SPDX-License-Identifier: MIT
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (int result = 0; kor_test::is_child(argc, argv, result))
        return result;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
