// SPDX-License-Identifier: MIT
// What trackers are drawn with, described once for the process.
#pragma once

#include "kortools/ui/window.h"

namespace kortools::graphics {

struct TrackerResources {
    ui::HatchPattern hatch; // diagonal lines, four pixels apart
    ui::Pen black_line;
    ui::Pen black_dots;
    ui::Pen red_line;
    ui::Pen red_dots;
};

TrackerResources const &get_tracker_resources();

} // namespace kortools::graphics
