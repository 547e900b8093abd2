// SPDX-License-Identifier: MIT
// Reads what scoutrix keeps of a file: its kind by its first bytes (meshes in text form by their
// content), then its dimensions or counts. Nothing is trusted: a file that is cut, damaged or of
// another kind raises a CXException whose message names the file and the reason.
#pragma once

#include "apps/common/console.h"
#include "apps/scene/scene.h"
#include "kortools/archive/exception.h"

namespace scoutrix {

// What a scene takes of the file at `path`.
SceneFile import_file(Text const &path, kor_apps::ProgressLine &progress);

// The readers, each for a file open at its beginning. `name` is for messages.
struct ImportSource {
    CXFile &file;
    Text const &name;
    kor_apps::ProgressLine &progress;

    [[noreturn]] void Fail(wchar_t const *reason) const; // "name: reason"

    // Reads `size` bytes at `offset`, or fails because the file is cut.
    void Read(unsigned long long offset, void *target, unsigned int size) const;
};

void import_bmp(ImportSource const &source, SceneFile &file);
void import_png(ImportSource const &source, SceneFile &file);
void import_obj(ImportSource const &source, SceneFile &file);

} // namespace scoutrix
