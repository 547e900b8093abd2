// SPDX-License-Identifier: MIT
// A whole file: which format it has, and the report of everything in it. What is not understood is
// reported as bytes, so that any file can be written back from its report.
#pragma once

#include "apps/kordump/archive_reader.h"

#include <optional>

namespace kordump {

enum class Format { Archive, CustomData, Preferences, Tree, Raw };

// "archive", "custom-data", "preferences", "tree", "raw".
std::string_view get_format_name(Format format);
std::optional<Format> find_format(std::string_view name);

// Raw when nothing else is recognised.
Format detect_format(ByteSpan bytes);

// What a file is to be read as.
struct Plan {
    Format format = Format::Raw;
    LayoutTable layouts;
    std::vector<Field> top; // what lies in an archive outside objects; empty: objects
};

Reading report_file(ByteSpan bytes, Plan const &plan, Report &report);

} // namespace kordump
