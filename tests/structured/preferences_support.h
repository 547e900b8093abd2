// SPDX-License-Identifier: MIT
// What the tests of preferences files share: their form, written by hand, and containers that can
// tell whether they are whole.
#pragma once

#include "kortools/data/custom_data.h"
#include "tests/archive/archive_encoder.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <optional>
#include <string>
#include <vector>

namespace kor_test {

struct Record {
    unsigned id;
    unsigned version;
    std::string container; // a magic, a total, and what the total counts
};

inline std::string encode_preferences(std::vector<Record> const &records)
{
    ArchiveEncoder file;
    file.u32(static_cast<unsigned>(records.size()));
    for (Record const &record : records)
        file.u32(record.id).u32(record.version).raw(record.container);
    return file.bytes();
}

inline std::string encode_opaque(unsigned magic, std::string const &bytes)
{
    return ArchiveEncoder().u32(magic).u32(static_cast<unsigned>(bytes.size())).raw(bytes).bytes();
}

inline std::string to_stream(CCustomData &data)
{
    unsigned long long size = 0;
    void *const block = data.SerializeToData(size);
    std::string stream(static_cast<char const *>(block), static_cast<std::size_t>(size));
    CCustomData::Free(block);
    return stream;
}

// A number, and bytes that follow from it and whose count does, too.
inline void fill_numbered(CCustomData &data, unsigned number)
{
    std::string bytes(number * 37 % 5000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(number + i * i);
    data.SetUInt(1, number);
    data.SetBinary(2, bytes.data(), static_cast<unsigned>(bytes.size()));
}

// The number of such a container when it is whole.
inline std::optional<unsigned> get_number(CCustomData const &data)
{
    unsigned number;
    if (!data.GetUInt(1, number))
        return std::nullopt;
    CCustomData expected;
    fill_numbered(expected, number);
    return expected.IsEqual(data) ? std::optional(number) : std::nullopt;
}

inline std::optional<unsigned> load_number(std::wstring const &path, unsigned id, unsigned version)
{
    CCustomData data;
    return data.LoadFromPrefs(path.c_str(), id, version) ? get_number(data) : std::nullopt;
}

inline bool save_number(std::wstring const &path, unsigned id, unsigned version, unsigned number)
{
    CCustomData data;
    fill_numbered(data, number);
    return data.SaveToPrefs(path.c_str(), id, version);
}

// Where files are made in memory, when the system has such a place: flushing costs nothing there.
inline std::filesystem::path get_fast_folder()
{
    std::filesystem::path const memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

} // namespace kor_test
