// SPDX-License-Identifier: MIT
#include "apps/kordump/cursor.h"

namespace kordump {

unsigned long long read_number(ByteSpan bytes)
{
    unsigned long long number = 0;
    unsigned int shift = 0;
    for (unsigned char const byte : bytes) {
        number |= static_cast<unsigned long long>(byte) << shift;
        shift += 8;
    }
    return number;
}

ByteSpan Cursor::Take(unsigned long long size)
{
    if (size > GetLeft())
        throw Damage("cut: " + std::to_string(size) + " bytes needed at offset "
            + std::to_string(m_offset) + ", " + std::to_string(GetLeft()) + " left");
    auto const taken = m_bytes.subspan(m_offset, static_cast<std::size_t>(size));
    m_offset += taken.size();
    return taken;
}

unsigned long long Cursor::TakeNumber(unsigned int size)
{
    return read_number(Take(size));
}

bool Cursor::IsNext(unsigned int number) const
{
    return GetLeft() >= 4 && read_number(m_bytes.subspan(m_offset, 4)) == number;
}

} // namespace kordump
