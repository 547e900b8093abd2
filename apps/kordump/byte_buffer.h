// SPDX-License-Identifier: MIT
// The bytes of a file that is being written. Numbers are little-endian.
#pragma once

#include <string>
#include <string_view>

namespace kordump {

class ByteBuffer {
public:
    void PutBytes(std::string_view bytes) { m_bytes += bytes; }
    void PutNumber(unsigned long long number, unsigned int size)
    {
        for (unsigned int i = 0; i < size; ++i)
            m_bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    }

    // Overwrites a number of four bytes.
    void ReplaceNumber(std::size_t at, unsigned long long number)
    {
        for (unsigned int i = 0; i < 4; ++i)
            m_bytes[at + i] = static_cast<char>(number >> (8 * i) & 0xFF);
    }

    std::size_t GetSize() const { return m_bytes.size(); }
    std::string TakeBytes() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};

} // namespace kordump
