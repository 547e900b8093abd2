// SPDX-License-Identifier: MIT
// What the tests of the archive share: files of several kinds, and failures as values.
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/mem_file.h"
#include "tests/archive/stream_file.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kor_test {

inline std::string get_bytes(CXMemFile const &file)
{
    auto const *data = reinterpret_cast<char const *>(file.GetBuffer());
    return data ? std::string(data, static_cast<std::size_t>(file.GetLength())) : std::string();
}

// The cause of the archive exception that a call throws; none when it does not throw.
template <class Call>
CXArchiveException::ArchiveExceptionType cause_of(
    Call const &call, CXTString<wchar_t> *file_name = nullptr)
{
    try {
        call();
    } catch (CXArchiveException *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        auto const cause = exception->GetCause();
        if (file_name)
            *file_name = exception->GetFileName();
        exception->Delete();
        return cause;
    }
    return CXArchiveException::none;
}

// What `write` stores.
template <class Write> std::string store_bytes(Write const &write)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    write(archive);
    archive.Close();
    return get_bytes(file);
}

// Stores each value, or loads one and compares: true when all are the same, bit for bit.
template <class... Values> bool exchange(CXArchive &archive, Values const &...values)
{
    auto const exchange_one = [&]<class T>(T const &value) {
        if (archive.IsStoring()) {
            archive << value;
            return true;
        }
        T loaded {};
        archive >> loaded;
        if constexpr (std::is_trivially_copyable_v<T>)
            return std::memcmp(&loaded, &value, sizeof value) == 0;
        else
            return loaded == value;
    };
    bool equal = true;
    ((equal = exchange_one(values) && equal), ...);
    return equal;
}

// Strings are stored whole, and loaded up to their first zero.
template <class T> bool exchange_cut(CXArchive &archive, std::basic_string<T> const &text)
{
    if (archive.IsLoading())
        return exchange(archive, CXTString<T>(text.c_str()));
    return exchange(archive, CXTString<T>(text.data(), static_cast<int>(text.size())));
}

// Calls read(archive) on a file in memory, and on one that has to be copied from through the
// smallest window.
template <class Read> void load_bytes(std::string_view bytes, Read const &read)
{
    CXMemFile file(reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size());
    CXArchive archive(&file, CXArchive::load);
    read(archive);
    StreamFile stream(bytes, 100);
    CXArchive windowed(&stream, CXArchive::load, CXArchive::minimum_buffer_size);
    read(windowed);
}

} // namespace kor_test
