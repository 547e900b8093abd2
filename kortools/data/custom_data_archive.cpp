// SPDX-License-Identifier: MIT
#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"
#include "kortools/archive/mem_file.h"
#include "kortools/core/throw.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/custom_data_entry.h"
#include "kortools/data/custom_data_source.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

// The stream: a magic word, then
//
//   "CUS5", "CUS4"   the total: 0, or 20 + the block's size; then version (1), entries, bytes of
//                    data, legacy mode, 0; then the block
//   "CUSU", "CUST"   the size of the old records, then these
//
// An old record is identifier, size, "more" flag, the data and three bytes of padding, which the
// last one may lack.

using kortools::data::count_entries;
using kortools::data::entry_header_size;
using kortools::data::stream_header_size;

namespace {

enum Magic : unsigned int {
    magic_present = 0x43555335, // "CUS5"
    magic_before = 0x43555334,  // "CUS4"
    magic_wide = 0x43555355,    // "CUSU"
    magic_narrow = 0x43555354   // "CUST"
};

constexpr unsigned int header_version = 1;
constexpr unsigned int record_stride = 15;       // bytes beyond the data
constexpr unsigned int unchecked_room = 0x10000; // bytes for a size that is not verified
constexpr unsigned int archive_buffer_size = 4096;

struct FreeBlock {
    void operator()(void *block) const { std::free(block); }
};
using Block = std::unique_ptr<unsigned char, FreeBlock>;

bool read_bytes(CXArchive &archive, void *target, std::size_t size)
{
    return archive.Read(target, size) == size;
}

void grow(Block &block, unsigned int size)
{
    void *const grown = std::realloc(block.get(), size);
    if (!grown)
        kortools::core::throw_out_of_memory();
    static_cast<void>(block.release());
    block.reset(static_cast<unsigned char *>(grown));
}

// Reads `size` bytes. Memory is taken at once only when the file has as many; from a pipe it is
// taken as bytes arrive.
bool read_block(CXArchive &archive, unsigned int size, Block &block)
{
    unsigned long long const left = archive.GetBytesLeft();
    if (left < size)
        return false;
    unsigned int const first
        = left == CXArchive::unknown_size ? std::min(size, unchecked_room) : size;
    for (unsigned int done = 0, room = first; done < size;) {
        grow(block, room);
        if (!read_bytes(archive, block.get() + done, room - done))
            return false;
        done = room;
        room = static_cast<unsigned int>(std::min<unsigned long long>(size, 2ULL * room));
    }
    return true;
}

} // namespace

void CCustomData::Serialize(CXArchive &archive)
{
    CXSingleLock const lock(&m_section, true);
    if (archive.IsStoring())
        Store(archive);
    else
        Load(archive);
}

void CCustomData::Store(CXArchive &archive)
{
    FreeExtra();
    unsigned int const total = m_size != 0 ? stream_header_size + m_size : 0;
    archive << static_cast<unsigned int>(magic_present) << total;
    if (total == 0)
        return;
    archive << header_version << m_count << m_size - m_count * entry_header_size << m_legacyMode
            << 0U;
    archive.Write(m_data, m_size);
}

void CCustomData::Load(CXArchive &archive)
{
    RemoveAll();
    unsigned int magic;
    bool valid = read_bytes(archive, &magic, sizeof magic);
    if (valid && (magic == magic_present || magic == magic_before))
        valid = LoadBlock(archive);
    else if (valid && magic == magic_wide)
        valid = LoadOldForm(archive, 1);
    else if (valid && magic == magic_narrow)
        valid = LoadOldForm(archive, 2);
    else
        valid = false;
    if (!valid)
        kortools::archive::throw_exception(new CXFileException(
            CXFileException::genericException, archive.GetFile()->GetFilePath()));
}

bool CCustomData::LoadBlock(CXArchive &archive)
{
    unsigned int total;
    if (!read_bytes(archive, &total, sizeof total))
        return false;
    if (total == 0)
        return true;
    unsigned int header[5];
    static_assert(sizeof header == stream_header_size);
    if (total < sizeof header || !read_bytes(archive, header, sizeof header)
        || header[0] != header_version)
        return false;
    auto const size = total - stream_header_size;
    Block block;
    unsigned int count;
    if (!read_block(archive, size, block) || !count_entries(block.get(), size, count))
        return false;
    Install(block.release(), size, count);
    m_legacyMode = header[3];
    return m_size == size;
}

bool CCustomData::LoadOldForm(CXArchive &archive, unsigned int legacyMode)
{
    unsigned int size;
    Block records;
    return read_bytes(archive, &size, sizeof size) && read_block(archive, size, records)
        && LoadRecords(records.get(), size, legacyMode);
}

// Enters old records into this empty container. False, and the container is empty, when one of
// them is cut. One of more bytes than all records have ends them: old writers left such behind.
bool CCustomData::LoadRecords(void const *records, unsigned int size, unsigned int legacyMode)
{
    m_legacyMode = legacyMode;
    auto const *const data = static_cast<unsigned char const *>(records);
    unsigned long long sum = 0;
    unsigned int more = size;
    for (unsigned long long at = 0; more != 0;) {
        unsigned int header[3] = {};
        bool const whole = at + sizeof header <= size;
        if (whole)
            std::memcpy(header, data + at, sizeof header);
        sum += header[1];
        if (whole && sum > size)
            break;
        if (!whole || at + sizeof header + header[1] > size) {
            RemoveAll();
            return false;
        }
        SetCustom(header[0], data + at + sizeof header, header[1], kindAny);
        more = header[2];
        at += header[1] + record_stride;
    }
    return true;
}

void *CCustomData::SerializeToData(unsigned long long &size)
{
    CXSingleLock const lock(&m_section, true);
    size = 0;
    if (!HasData())
        return nullptr;
    try {
        CXMemFile file(archive_buffer_size);
        file.GrowBuffer(sizeof(unsigned int) * 2ULL + stream_header_size + m_size);
        CXArchive archive(&file, CXArchive::store, archive_buffer_size);
        Serialize(archive);
        archive.Close();
        size = file.GetLength();
        return file.Detach();
    } catch (CXException *exception) {
        exception->Delete();
        size = 0;
        return nullptr;
    }
}

bool CCustomData::SerializeFromData(void const *data, unsigned long long size)
{
    CXSingleLock const lock(&m_section, true);
    if (size == 0) {
        RemoveAll();
        return true;
    }
    SourceBytes const source(*this, data, size);
    bool isRead = false;
    try {
        CXMemFile file(static_cast<unsigned char const *>(source.Get()), size);
        CXArchive archive(&file, CXArchive::load, archive_buffer_size);
        Serialize(archive);
        isRead = true;
    } catch (CXException *exception) {
        exception->Delete();
        RemoveAll();
    }
    return isRead;
}

bool CCustomData::SerializeFromData(CCustomData &target, void const *data, unsigned long long size)
{
    return target.SerializeFromData(data, size);
}
