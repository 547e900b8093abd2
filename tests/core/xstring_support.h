// SPDX-License-Identifier: MIT
// What the tests of both string widths share.
#pragma once

#include "kortools/core/xstring.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

using BothWidths = testing::Types<char, wchar_t>;

struct WidthNames {
    template <class T> static char const *GetName(int)
    {
        return sizeof(T) == 1 ? "char" : "wchar_t";
    }
};

// An ASCII literal, its inner zeros included, in the width under test.
template <class T, std::size_t n> std::basic_string<T> lit(char const (&text)[n])
{
    return std::basic_string<T>(text, text + n - 1);
}

// A text of up to `longest` letters out of the first few of the alphabet, so that everything
// occurs in everything.
template <class T>
std::basic_string<T> random_text(std::mt19937 &random, unsigned longest, unsigned letters = 2)
{
    std::basic_string<T> text(random() % (longest + 1), T());
    for (T &ch : text)
        ch = static_cast<T>('a' + random() % letters);
    return text;
}
