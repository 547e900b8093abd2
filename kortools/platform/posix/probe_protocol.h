// SPDX-License-Identifier: MIT
// What the library and kortools-plugin-probe say to each other, over a socket that keeps messages
// apart: the helper says Ready, and from then on each request gets one reply.
#pragma once

#include <cstddef>

namespace kortools::platform {

inline constexpr int probe_channel = 3; // the helper's descriptor

enum class ProbeRequest : char {
    Call = 'c', // followed by a library's path, a zero and the name of a function
    Load = 'l'  // followed by the path of a library that others will need
};
inline constexpr std::size_t max_probe_request = 16384; // bytes

enum class ProbeReplyKind : unsigned int { Ready, Number, NoFunction, MissingLibrary, NotLoaded };

struct ProbeReply {
    ProbeReplyKind kind = ProbeReplyKind::Ready;
    unsigned int number = 0;
    char text[504] = {}; // a library's name, what the system says; zero-terminated, may be cut
};

} // namespace kortools::platform
