// SPDX-License-Identifier: MIT
// Reports custom data, as in docs/custom-data-format.md. Damage in a block whose size is known
// stays in it: what cannot be told apart there is reported as bytes.
#pragma once

#include "apps/kordump/cursor.h"
#include "apps/kordump/report.h"

namespace kordump {

// Containers in containers are decoded this deep; deeper ones are bytes.
constexpr int maximum_container_depth = 32;

// True when a stream begins here.
bool is_custom_data(Cursor const &cursor);

// A stream of any form. Throws Damage where there is none, which the report is not told then, and
// when the block is cut, after it was reported.
void read_custom_data(Cursor &cursor, Report &report, std::string_view name, std::string_view key);

// Entries without a header, up to the end.
void read_custom_data_block(Cursor &cursor, Report &report);

// True when the bytes are entries, at least one, with nothing behind them.
bool is_custom_data_block(ByteSpan bytes);

} // namespace kordump
