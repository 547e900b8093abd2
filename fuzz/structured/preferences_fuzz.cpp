// SPDX-License-Identifier: MIT
// Preferences files of arbitrary bytes, and what an interrupted save may have left beside them.
// The first two bytes are the size of the ".tmp" (FFFF: there is none); its bytes follow, then
// those of the file.
//
// Nothing may crash, leak or take memory out of proportion. A save keeps the bytes of every other
// record; where it is refused nothing changes.
#include "kortools/archive/exception.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/preferences_file.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace kortools::data;

constexpr RecordKey own_key { 1, 2 };

void check(bool holds)
{
    if (!holds)
        std::abort();
}

struct KeptRecord {
    RecordKey key;
    std::string container;
    bool operator==(KeptRecord const &) const = default;
};

struct Files {
    Files()
    {
        std::filesystem::path const memory = "/dev/shm";
        auto const parent = std::filesystem::is_directory(memory)
            ? memory
            : std::filesystem::temp_directory_path();
        folder = parent / ("kortools-fuzz-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
        target = folder / "App.prefs";
        copy = folder / "App.prefs.tmp";
    }
    ~Files() { std::filesystem::remove_all(folder); }

    std::filesystem::path folder, target, copy;
};

void put(std::filesystem::path const &path, std::string const &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string get(std::filesystem::path const &path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

// The records as a reader of the format sees them that believes nothing.
bool read_records(std::string const &bytes, std::vector<KeptRecord> &records)
{
    records.clear();
    auto const number = [&](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
        return value;
    };
    if (bytes.size() < 4)
        return bytes.empty();
    std::size_t at = 4;
    while (records.size() < number(0)) {
        if (bytes.size() - at < 16 || number(at + 12) > bytes.size() - at - 16)
            return false;
        std::size_t const size = 8 + number(at + 12);
        records.push_back({ { number(at), number(at + 4) }, bytes.substr(at + 8, size) });
        at += 8 + size;
    }
    return at == bytes.size();
}

void save(Files const &files, bool is_possible, std::vector<KeptRecord> expected)
{
    CCustomData data;
    data.SetInt(1, 42);
    unsigned long long size = 0;
    void *const block = data.SerializeToData(size);
    std::erase_if(expected, [](KeptRecord const &record) { return record.key == own_key; });
    expected.push_back({ own_key, { static_cast<char const *>(block), size } });
    CCustomData::Free(block);

    std::string const before = get(files.target);
    check(data.SaveToPrefs(files.target.wstring().c_str(), own_key.id, own_key.version)
        == is_possible);
    check(!std::filesystem::exists(files.copy));
    std::vector<KeptRecord> found;
    if (is_possible)
        check(read_records(get(files.target), found) && found == expected);
    else
        check(get(files.target) == before);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    static Files const s_files;
    if (size < 2)
        return 0;
    std::string const bytes(reinterpret_cast<char const *>(data) + 2, size - 2);
    std::size_t const copy_size = data[0] | static_cast<std::size_t>(data[1]) << 8;
    bool const has_copy = copy_size != 0xFFFF;
    std::string const copy = has_copy ? bytes.substr(0, copy_size) : "";
    std::string const target = bytes.substr(copy.size());
    put(s_files.target, target);
    if (has_copy)
        put(s_files.copy, copy);

    std::vector<KeptRecord> records;
    bool const is_committed = has_copy && read_records(copy, records) && !records.empty();
    bool const is_possible = is_committed || read_records(target, records);
    CCustomData loaded;
    for (unsigned id = 0; id < 3; ++id) {
        for (unsigned version = 0; version < 4; ++version)
            loaded.LoadFromPrefs(s_files.target.wstring().c_str(), id, version, id == 1);
    }
    save(s_files, is_possible, records);
    return 0;
}
