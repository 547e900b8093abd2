// SPDX-License-Identifier: MIT
// The host's own readers, for where no plug-in is found. They read what a scene keeps of a file:
// its kind by its first bytes (meshes in text form by their content), then its dimensions or
// counts. Nothing is trusted: a file that is cut, damaged or of another kind raises a CXException
// whose message names the file and the reason.
#pragma once

#include "apps/common/console.h"
#include "apps/scene/scene.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"

#include <atomic>

namespace scoutrix {

// What is known of any file: its place, size and date.
SceneFile describe_file(Text const &path);

// What a scene takes of the file at `path`. `done` counts the bytes that were looked at. Throws
// soon when the calling thread is to be cancelled.
SceneFile import_file(Text const &path, std::atomic<unsigned long long> &done);

// The readers, each for a file open at its beginning. `name` is for messages.
struct ImportSource {
    CXFile &file;
    Text const &name;
    std::atomic<unsigned long long> &done;

    [[noreturn]] void Fail(wchar_t const *reason) const; // "name: reason"

    // To be called now and then with the bytes that were looked at.
    void Update(unsigned long long bytes) const;

    // Reads `size` bytes at `offset`, or fails because the file is cut.
    void Read(unsigned long long offset, void *target, unsigned int size) const;
};

void import_bmp(ImportSource const &source, SceneFile &file);
void import_png(ImportSource const &source, SceneFile &file);
void import_obj(ImportSource const &source, SceneFile &file);

} // namespace scoutrix
