// SPDX-License-Identifier: MIT
// Makes a code page the ANSI one while it lives.
#pragma once

#include "kortools/platform/code_pages.h"

#include <gtest/gtest.h>

class AnsiPage {
public:
    explicit AnsiPage(unsigned int page)
    {
        EXPECT_TRUE(kortools::platform::set_ansi_code_page(page)) << page;
    }
    ~AnsiPage() { kortools::platform::set_ansi_code_page(0); }
    AnsiPage(AnsiPage const &) = delete;
    AnsiPage &operator=(AnsiPage const &) = delete;
};
