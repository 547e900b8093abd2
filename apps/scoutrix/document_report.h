// SPDX-License-Identifier: MIT
// Prints what documents are, on standard output.
#pragma once

#include "apps/scoutrix/document.h"

#include <deque>

namespace scoutrix {

// What a document that was loaded is, and all that is known of it, one line each.
void print_document(Document const &document);

// One line for each document: file, type, loader, content (or why there is none) and time.
void print_document_table(std::deque<Document> const &documents);

// One array: of each document what is known, or the error and the exit code for it.
void print_documents_json(std::deque<Document> const &documents);

} // namespace scoutrix
