// SPDX-License-Identifier: MIT
#pragma once

namespace bitmap_plugin {

class ByteSource;

// Whether the segments of a JPEG file follow each other up to its end mark, and its Huffman tables
// have no more codes than there are. The decoder relies on that without looking.
bool is_sound_jpeg(ByteSource &source);

} // namespace bitmap_plugin
