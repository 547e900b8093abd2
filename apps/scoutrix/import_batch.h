// SPDX-License-Identifier: MIT
// Imports many files at once, on threads of its own.
#pragma once

#include "apps/scene/scene.h"

#include <atomic>
#include <deque>

namespace scoutrix {

// A file to be imported, and what came of it.
struct ImportTask {
    explicit ImportTask(Text file_path)
        : path(std::move(file_path))
    {
    }

    Text path;
    unsigned long long size = 0;                // bytes
    std::atomic<unsigned long long> done { 0 }; // bytes that were looked at
    SceneFile file;                             // when there is no error
    Text error = L"not read";                   // why it was not imported; empty: it was
};

// Takes the files in their order, on up to `threads` threads, which are children of the calling one
// and so end soon when that is marked to be cancelled. The calling thread waits, and reports the
// bytes done to the topmost progress callback, which it also asks whether the user has cancelled:
// false then, and the tasks are in no particular state. A task that fails does not stop the others.
// Throws CXException when no thread can be started.
bool run_imports(std::deque<ImportTask> &tasks, int threads);

} // namespace scoutrix
