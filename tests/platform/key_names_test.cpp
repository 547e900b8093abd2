// SPDX-License-Identifier: MIT
#include "kortools/platform/key_names.h"

#include <gtest/gtest.h>

#include <set>

using namespace kortools::platform;

// Keys whose names are the same on purpose, Ctrl and left Ctrl or the two \, are not among these.
TEST(KeyNames, TellKeysApartInBothLanguages)
{
    struct Range {
        unsigned int first;
        unsigned int last;
    };
    Range const ranges[] = { { 0x08, 0x09 }, { 0x0D, 0x0D }, { 0x10, 0x14 }, { 0x1B, 0x1B },
        { 0x20, 0x39 }, { 'A', 'Z' }, { 0x5B, 0x5D }, { 0x5F, 0x87 }, { 0x90, 0x91 },
        { 0xA6, 0xB7 }, { 0xBA, 0xC0 }, { 0xDB, 0xDE } };
    for (KeyLanguage const language : { KeyLanguage::English, KeyLanguage::French }) {
        std::set<std::wstring> names;
        for (Range const &range : ranges) {
            for (unsigned int key = range.first; key <= range.last; ++key) {
                std::wstring const name = get_key_name(key, language);
                EXPECT_TRUE(!name.empty() && name.size() < 30 && names.insert(name).second) << key;
            }
        }
        EXPECT_EQ(get_key_name(0x07, language) + get_key_name(0x88, language), L"");
    }
    EXPECT_EQ(get_key_name(0x87, KeyLanguage::French), L"F24");
}
