// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kor_test {

// Where the tests' recorded files are, and the top of the source tree; no separator at the end.
std::string data_folder();
std::string source_folder();

} // namespace kor_test
