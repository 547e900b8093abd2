// SPDX-License-Identifier: MIT
#include "tests/ui/driver.h"

#include <gtest/gtest.h>

using kor_test::Driver;

TEST(Windows, AreMadeHidden)
{
    std::unique_ptr<Driver> const driver = kor_test::make_driver();
    kortools::ui::WindowHandler handler;
    auto const frame
        = driver->install().CreateViewFrame(handler, kortools::ui::ViewKind::Plain, L"A title");
    EXPECT_FALSE(frame->IsVisible());
    EXPECT_EQ(driver->read(*frame).title, L"A title");
}
