// SPDX-License-Identifier: MIT
// The only source with the folder's name among its options: the others compile alike in any folder,
// and are found in the compiler cache.
#include "tests/support/folders.h"

namespace kor_test {

std::string data_folder()
{
    return source_folder() + "/tests/data";
}

std::string source_folder()
{
    return KOR_SOURCE_FOLDER;
}

} // namespace kor_test
