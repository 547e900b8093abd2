// SPDX-License-Identifier: MIT
#include "kortools/graphics/tracker_resources.h"

namespace kortools::graphics {

TrackerResources const &get_tracker_resources()
{
    using Line = ui::Pen::Line;
    static TrackerResources const resources {
        { 0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88 },
        { CRGBColor(0, 0, 0), Line::Solid },
        { CRGBColor(0, 0, 0), Line::Dotted },
        { CRGBColor(255, 0, 0), Line::Solid },
        { CRGBColor(255, 0, 0), Line::Dotted },
    };
    return resources;
}

} // namespace kortools::graphics
