// SPDX-License-Identifier: MIT
// What the tests of files on disk and in memory share.
#pragma once

#include "kortools/archive/file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace kor_test {

// Runs `call` and expects it to throw an `Exception`, which is registered as pending and carries
// `fileName`, unless that is null. Returns its cause (0 where it has none) after deleting it.
template <class Exception, class Call>
int cause_of(Call const &call, wchar_t const *fileName = nullptr)
{
    try {
        call();
    } catch (Exception *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        int cause = 0;
        if constexpr (requires { exception->GetCause(); }) {
            cause = exception->GetCause();
            EXPECT_TRUE(!fileName || exception->GetFileName() == fileName);
        }
        exception->Delete();
        return cause;
    } catch (...) {
        ADD_FAILURE() << "another exception";
        XDeleteThreadException();
        return -1;
    }
    ADD_FAILURE() << "nothing was thrown";
    return -1;
}

// A file as bytes and a position, written to be obviously right.
struct FileModel {
    std::vector<unsigned char> bytes;
    std::size_t position = 0;

    void Write(std::vector<unsigned char> const &source)
    {
        if (!source.empty()) // nothing written beyond the end extends nothing
            bytes.resize(std::max(bytes.size(), position + source.size()));
        for (unsigned char const byte : source)
            bytes[position++] = byte;
    }

    std::vector<unsigned char> Read(std::size_t count)
    {
        std::vector<unsigned char> result;
        while (result.size() < count && position < bytes.size())
            result.push_back(bytes[position++]);
        return result;
    }

    void SetLength(std::size_t length)
    {
        bytes.resize(length);
        position = std::min(position, length);
    }
};

// Random operations on an empty file that throws on errors, compared with the model after each.
class FileBattery {
public:
    FileBattery(CXFile &file, unsigned int seed)
        : m_file(file)
        , m_random(seed)
    {
    }

    void Run(int steps)
    {
        for (int step = 0; step < steps; ++step) {
            Step();
            ASSERT_EQ(m_file.GetPosition(), m_model.position) << "step " << step;
            ASSERT_EQ(m_file.GetLength(), m_model.bytes.size()) << "step " << step;
        }
        m_file.Seek(0, CXFile::begin);
        m_model.position = 0;
        Read(m_model.bytes.size() + 1);
    }

private:
    std::size_t GetRandom(std::size_t end) { return m_random() % end; }

    void Step()
    {
        std::size_t const choice = GetRandom(8);
        if (choice == 0)
            SetLength(GetRandom(m_model.bytes.size() * 3 / 2 + 9));
        else if (choice <= 3)
            Write(GetRandom(200));
        else if (choice <= 5)
            Read(GetRandom(200));
        else
            Seek();
    }

    void SetLength(std::size_t length)
    {
        m_file.SetLength(length);
        m_model.SetLength(length);
    }

    void Write(std::size_t count)
    {
        std::vector<unsigned char> source(count + 1);
        for (unsigned char &byte : source)
            byte = static_cast<unsigned char>(GetRandom(255) + 1);
        m_file.Write(source.data(), static_cast<unsigned int>(count));
        source.pop_back();
        m_model.Write(source);
    }

    void Read(std::size_t count)
    {
        std::vector<unsigned char> target(count + 1, 0xEE);
        unsigned int const done = m_file.Read(target.data(), static_cast<unsigned int>(count));
        std::vector<unsigned char> const expected = m_model.Read(count);
        ASSERT_EQ(done, expected.size());
        EXPECT_EQ(target[done], 0xEE);
        target.resize(done);
        EXPECT_EQ(target, expected);
    }

    void Seek()
    {
        auto const origin = static_cast<CXFile::SeekPosition>(GetRandom(3));
        auto const base = static_cast<long long>(origin == CXFile::begin ? 0
                : origin == CXFile::current                              ? m_model.position
                                                                         : m_model.bytes.size());
        long long const target
            = static_cast<long long>(GetRandom(m_model.bytes.size() + 300)) - 100;
        if (target < 0) {
            cause_of<CXException>([&] { m_file.Seek(target - base, origin); });
        } else {
            EXPECT_EQ(m_file.Seek(target - base, origin), static_cast<std::size_t>(target));
            m_model.position = static_cast<std::size_t>(target);
        }
    }

    CXFile &m_file;
    FileModel m_model;
    std::mt19937 m_random;
};

} // namespace kor_test
