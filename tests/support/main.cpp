// SPDX-License-Identifier: MIT
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

// Tests of exhausted memory ask for more than there is; the sanitizers' allocators would abort.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KOR_SANITIZER_OPTIONS(name)                                                                \
    extern "C" __attribute__((visibility("default"))) char const *name()                           \
    {                                                                                              \
        return "allocator_may_return_null=1";                                                      \
    }
KOR_SANITIZER_OPTIONS(__asan_default_options)
KOR_SANITIZER_OPTIONS(__tsan_default_options)
#endif

int main(int argc, char **argv)
{
    if (int result = 0; kor_test::is_child(argc, argv, result))
        return result;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
