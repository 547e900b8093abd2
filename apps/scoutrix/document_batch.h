// SPDX-License-Identifier: MIT
// Loads many documents at once, on threads of its own.
#pragma once

#include "apps/scoutrix/document.h"

#include <deque>

namespace scoutrix {

struct BatchOptions {
    int threads = 1;              // at most
    unsigned int timeout = 10000; // milliseconds that each path may take to be tested
};

// Tests the paths, then takes the files in their order, on threads which are children of the
// calling one and so end soon when that is marked to be cancelled. The calling thread waits, and
// reports the bytes done to the topmost progress callback, which it also asks whether the user has
// cancelled: false then, and the documents are in no particular state. One that fails does not stop
// the others. Throws CXException when no thread can be started.
bool load_documents(std::deque<Document> &documents, BatchOptions const &options);

} // namespace scoutrix
