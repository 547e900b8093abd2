// SPDX-License-Identifier: MIT
// Numbers as printf writes them, before padding: sign, prefix, digits, exponent.
#pragma once

#include "kortools/platform/directive.h"

#include <cstddef>
#include <string_view>

namespace kortools::platform {

// One parsed printf directive.
struct FormatDirective {
    bool left = false; // -
    bool plus = false;
    bool space = false;
    bool zero = false;
    bool alternate = false; // #
    ArgumentSize size = ArgumentSize::Default;
    char type = 0; // the letter, an ASCII character
    int width = 0;
    int precision = -1; // -1 when not given
};

// The parts of a number in the order of output. Runs of zeros that only a large precision makes
// are counts, so that no precision needs a larger buffer.
struct NumberText {
    char head[4] = {}; // sign, 0x
    std::size_t head_length = 0;
    std::size_t leading_zeros = 0;
    std::string_view whole; // the digits before the point
    bool has_point = false;
    std::string_view fraction;
    std::size_t trailing_zeros = 0;
    std::string_view exponent; // its letter included
    bool zero_padding = false; // whether the width is filled up with zeros behind the head
};

// A double has up to 309 digits before the point and 1074 behind it.
inline constexpr int max_exact_precision = 1100;
using NumberBuffer = char[309 + max_exact_precision + 16];

// d, i, u, o, x and X.
NumberText make_integer_text(FormatDirective const &directive, unsigned long long magnitude,
    bool negative, NumberBuffer &buffer);

// e, f, g, a and their capitals; exact ties round to even, NaN and infinity as Windows writes them.
NumberText make_float_text(FormatDirective const &directive, double value, NumberBuffer &buffer);

} // namespace kortools::platform
