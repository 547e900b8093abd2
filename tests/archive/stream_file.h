// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/archive/mem_file.h"

#include <algorithm>
#include <string_view>

namespace kor_test {

// A memory file that an archive has to go through Read() and Write() for, `m_step` bytes at most
// at a time, and that can keep its length to itself as a pipe does.
class StreamFile : public CXMemFile {
public:
    explicit StreamFile(std::string_view bytes = {}, unsigned int step = 1, bool tellsLength = true)
        : m_step(step)
        , m_tellsLength(tellsLength)
    {
        CXMemFile::Write(bytes.data(), static_cast<unsigned int>(bytes.size()));
        Seek(0, begin);
    }
    unsigned int Read(void *target, unsigned int count) override
    {
        return CXMemFile::Read(target, std::min(count, m_step));
    }
    unsigned long long GetLength() const override
    {
        return m_tellsLength ? CXMemFile::GetLength() : 0;
    }
    unsigned long long BufferCommand(
        BufferCommandType, unsigned long long, void **, void **) override
    {
        return 0;
    }

private:
    unsigned int m_step;
    bool m_tellsLength;
};

} // namespace kor_test
