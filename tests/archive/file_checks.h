// SPDX-License-Identifier: MIT
// What the tests of files on disk and in memory share.
#pragma once

#include "kortools/archive/file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
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

// Random operations on an empty file that throws on errors, compared after each with a model: bytes
// and a position.
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
            ASSERT_EQ(m_file.GetPosition(), m_position) << "step " << step;
            ASSERT_EQ(m_file.GetLength(), m_bytes.size()) << "step " << step;
        }
        m_file.Seek(0, CXFile::begin);
        m_position = 0;
        Read(m_bytes.size() + 1);
    }

private:
    std::size_t GetRandom(std::size_t end) { return m_random() % end; }

    void Step()
    {
        std::size_t const choice = GetRandom(8);
        if (choice == 0) {
            std::size_t const length = GetRandom(m_bytes.size() * 3 / 2 + 9);
            m_file.SetLength(length);
            m_bytes.resize(length);
            m_position = std::min(m_position, length);
        } else if (choice <= 3) {
            Write(GetRandom(200));
        } else if (choice <= 5) {
            Read(GetRandom(200));
        } else {
            Seek();
        }
    }

    void Write(std::size_t count)
    {
        std::string source(count, 'x');
        for (char &byte : source)
            byte = static_cast<char>(GetRandom(255) + 1);
        m_file.Write(source.data(), static_cast<unsigned int>(count));
        if (count != 0) // nothing written beyond the end extends nothing
            m_bytes.resize(std::max(m_bytes.size(), m_position + count));
        m_bytes.replace(std::min(m_position, m_bytes.size()), count, source);
        m_position += count;
    }

    void Read(std::size_t count)
    {
        std::string target(count + 1, '~');
        unsigned int const done = m_file.Read(target.data(), static_cast<unsigned int>(count));
        std::string const expected
            = m_position < m_bytes.size() ? m_bytes.substr(m_position, count) : "";
        ASSERT_EQ(done, expected.size());
        EXPECT_EQ(target.substr(0, done + 1), expected + '~');
        m_position += done;
    }

    void Seek()
    {
        auto const origin = static_cast<CXFile::SeekPosition>(GetRandom(3));
        auto const base = static_cast<long long>(origin == CXFile::begin ? 0
                : origin == CXFile::current                              ? m_position
                                                                         : m_bytes.size());
        long long const target = static_cast<long long>(GetRandom(m_bytes.size() + 300)) - 100;
        if (target < 0) {
            cause_of<CXException>([&] { m_file.Seek(target - base, origin); });
        } else {
            EXPECT_EQ(m_file.Seek(target - base, origin), static_cast<std::size_t>(target));
            m_position = static_cast<std::size_t>(target);
        }
    }

    CXFile &m_file;
    std::string m_bytes;
    std::size_t m_position = 0;
    std::mt19937 m_random;
};

} // namespace kor_test
