// SPDX-License-Identifier: MIT
// Damages the seeds of a fuzz target in every place and hands them to the target, which ends the
// program where an input is neither refused nor read as promised. Unlike a fuzzer it tries the same
// on every machine, on both compilers' code, and is done.
#include "tests/support/files.h"

#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size);

namespace {

constexpr std::size_t most_places = 400; // of one file; of a longer one every second, third ...
constexpr long most_memory = 512 * 1024; // KiB, what the program itself needs included

long count_memory()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class Hostile : public testing::Test {
protected:
    void Try(std::string const &bytes)
    {
        // Exactly as large as the input, so that a read behind its end is seen.
        std::vector<std::uint8_t> const copy(bytes.begin(), bytes.end());
        EXPECT_EQ(LLVMFuzzerTestOneInput(copy.data(), copy.size()), 0);
        ++m_inputs;
    }

    // Writes a number over what is at `place`, as a length or a count would be.
    void TryNumber(std::string const &bytes, std::size_t place, std::string const &number)
    {
        if (place + number.size() <= bytes.size())
            Try(std::string(bytes).replace(place, number.size(), number));
    }

    void Damage(std::string const &bytes)
    {
        std::size_t const step = bytes.size() / most_places + 1;
        for (std::size_t place = 0; place < bytes.size(); place += step) {
            Try(bytes.substr(0, place));
            Try(bytes.substr(place));
            for (int const bits : { 0x01, 0x80, 0xFF }) {
                std::string changed = bytes;
                changed[place] = static_cast<char>(changed[place] ^ bits);
                Try(changed);
            }
            TryNumber(bytes, place, std::string(2, '\xFF'));
            TryNumber(bytes, place, std::string("\xFF\xFF\xFF\x7F", 4));
            TryNumber(bytes, place, std::string("\0\0\0\x80", 4));
            TryNumber(bytes, place, std::string(8, '\xFF'));
            Try(std::string(bytes).insert(place, bytes.substr(place, 16)));
        }
    }

    int m_inputs = 0;
};

TEST_F(Hostile, DamageInEveryPlaceIsRefusedOrRead)
{
    for (auto const &entry : std::filesystem::directory_iterator(KOR_CORPUS))
        Damage(kor_test::read_file(entry.path()));
    EXPECT_GT(m_inputs, 100);
    EXPECT_LT(count_memory(), most_memory) << "KiB";
    RecordProperty("inputs", m_inputs);
    std::printf("%d inputs, %ld KiB\n", m_inputs, count_memory());
}

} // namespace
