// SPDX-License-Identifier: MIT
// A file that is opened by its name. The host tests the path, within a time limit; the registry of
// file types tells what it is; a plug-in that has registered the type loads it or, where there is
// none, the host's own reader.
#pragma once

#include "apps/common/exit_codes.h"
#include "apps/scene/scene.h"
#include "kortools/files/plugin_files.h"

#include <atomic>
#include <chrono>

namespace scoutrix {

using kor_apps::ExitCode;
using enum kor_apps::ExitCode;

// What came of a file.
struct Document {
    explicit Document(Text file_path)
        : path(std::move(file_path))
    {
    }

    Text path;
    unsigned long long size = 0;                // bytes
    std::atomic<unsigned long long> done { 0 }; // bytes that were looked at, about
    CFileExt type;                              // class 0: of none
    Text loader;                                // which component has read it
    SceneFile file;                             // when there is no error
    std::chrono::microseconds time { 0 };       // that loading took
    Text error = L"not read";                   // why it was not opened; empty: it was
    ExitCode code = exit_failed;                // that tells so to scripts
};

// True when the path names a file, whose size it stores; else the document has the error. Waits for
// the disk up to `timeout` milliseconds.
bool test_path(Document &document, unsigned int timeout);

// What a plug-in's answer is to scripts.
ExitCode get_exit_code(IoPluginResult result);

// Loads a document whose path was tested; what goes wrong is its error. On any thread; returns soon
// when that is to be cancelled.
void load_document(Document &document);

} // namespace scoutrix
