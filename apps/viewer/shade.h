// SPDX-License-Identifier: MIT
// A simple picture of a model: seen from the front, a little from the right and from above, without
// perspective, each face in its colour under one light.
#pragma once

#include "apps/viewer/content.h"

namespace viewer {

// `size` has at least one pixel. A model of nothing gives the ground alone.
kortools::ui::Picture shade_model(Model const &model, CXSize const &size);

} // namespace viewer
