// SPDX-License-Identifier: MIT
// The folders on the way from the top of a tree to the one that is being visited.
//
// Folders are opened by their name in the one above, without following links, so no path grows too
// long and whoever swaps a folder for a link meanwhile leads the walk nowhere. Only the innermost
// folders are kept open. One further out is opened again through "..", and must then be the one
// that the walk came from.
#pragma once

#include <string>
#include <sys/stat.h>
#include <vector>

namespace kortools::platform {

class FolderStack {
public:
    FolderStack() = default;
    ~FolderStack();
    FolderStack(FolderStack const &) = delete;
    FolderStack &operator=(FolderStack const &) = delete;

    bool is_empty() const { return m_levels.empty(); }
    int get() const; // the descriptor of the innermost folder; AT_FDCWD when empty

    bool enter(std::string const &name); // in the innermost folder; the first name may be a path

    // Leaves the innermost folder. False when the one above cannot be reached any more; the stack
    // is then empty.
    bool leave();

private:
    struct Level {
        int fd = -1; // -1 while it is closed
        dev_t device = 0;
        ino_t number = 0;
    };

    std::vector<Level> m_levels; // the innermost one is last, and open
};

} // namespace kortools::platform
