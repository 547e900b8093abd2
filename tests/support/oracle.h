// SPDX-License-Identifier: MIT
// Recorded results of system services: tab-separated ASCII files in tests/data, in which lines
// that begin with '#' are comments and text is escaped (\\ \t \n, and \xHHHH for a UTF-16 unit).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kor_test {

using OracleRow = std::vector<std::string>;

// The rows of tests/data/<name>, fields still escaped. Throws std::runtime_error without the file.
std::vector<OracleRow> read_oracle(std::string const &name);

// Escaped text to UTF-16 units, lone surrogates included.
std::u16string unescape(std::string_view field);

// Groups of four hex digits to UTF-16 units; pairs of hex digits to bytes.
std::u16string units_from_hex(std::string_view field);
std::string bytes_from_hex(std::string_view field);

// UTF-16 units to the platform's wide text and back: pairs become one code point where wchar_t has
// 32 bits, lone surrogates stay.
std::wstring to_wide(std::u16string_view units);
std::u16string to_units(std::wstring_view text);

} // namespace kor_test
