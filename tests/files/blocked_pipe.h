// SPDX-License-Identifier: MIT
// A pipe that nobody writes to: reading from it blocks until somebody cancels that.
#pragma once

class BlockedPipe {
public:
    BlockedPipe();
    ~BlockedPipe();
    BlockedPipe(BlockedPipe const &) = delete;
    BlockedPipe &operator=(BlockedPipe const &) = delete;

    void *GetHandle() const { return m_read_end; } // as CXFile takes it

private:
    void *m_read_end;
    void *m_write_end;
};
