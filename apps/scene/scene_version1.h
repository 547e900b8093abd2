// SPDX-License-Identifier: MIT
// Scenes of version 1: lists of folders, formats and assets, which refer to each other.
#pragma once

class CScene;
class CXArchive;

namespace scoutrix {

// Reads the content of such a scene into an empty one. Throws what the archive throws, and
// CXArchiveException with the bad-index cause when an asset refers to what is not in the lists.
void load_version1(CXArchive &archive, CScene &scene);

} // namespace scoutrix
