// SPDX-License-Identifier: MIT
// Scenes in the formats that assimp reads.
#pragma once

#include "kortools/files/io_plugin.h"

#include <cstddef>
#include <stdexcept>

struct aiScene;

namespace model_plugin {

// Ends a request: thrown by the steps, caught at the entry point.
class Failure : public std::runtime_error {
public:
    Failure(IoPluginResult result, char const *reason)
        : std::runtime_error(reason)
        , m_result(result)
    {
    }
    IoPluginResult get_result() const { return m_result; }

private:
    IoPluginResult m_result;
};

// Copies as much of a text as there is room for.
void set_text(char *target, std::size_t size, char const *text);

void load(IoPluginLoad &request);                            // throws Failure and std::exception
void hand_over(IoPluginLoad &request, aiScene const &scene); // throws Failure

} // namespace model_plugin
