// SPDX-License-Identifier: MIT
// A scene on disk: one archive that holds one CScene.
#pragma once

#include "apps/scene/scene.h"

#include <memory>

namespace scoutrix {

// Throws CXException with a message that names the file: it cannot be opened, is cut, is not a
// scene, or goes on after the scene.
std::unique_ptr<CScene> load_scene(Text const &path);

// Writes beside the target first, so that a failure leaves an earlier scene as it was.
void save_scene(CScene const &scene, Text const &path);

} // namespace scoutrix
