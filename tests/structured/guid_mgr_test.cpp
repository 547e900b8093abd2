// SPDX-License-Identifier: MIT
#include "kortools/data/guid_mgr.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <thread>
#include <vector>

namespace {

using Guid = unsigned long long;

// The rules word by word, one candidate after the other.
struct GuidModel {
    struct Info {
        unsigned class_number, guid32;
    };
    struct Base {
        Guid base, next;
    };
    std::map<Guid, Info> guids;
    std::map<unsigned, Guid> guids32;
    std::map<unsigned, Base> classes;

    static Guid shifted(Guid k, int bits, bool left) { return left ? k << bits : k >> bits; }
    static unsigned short_form(Guid v)
    {
        if (v < 0x100000000)
            return static_cast<unsigned>(v);
        Guid k = shifted(v, 18, true) + ~v;
        k = (k ^ shifted(k, 31, false)) * 21;
        k = (k ^ shifted(k, 11, false)) * 65;
        return static_cast<unsigned>(k ^ shifted(k, 22, false));
    }
    Guid get_new(Guid wanted, unsigned class_number)
    {
        if (wanted == 0)
            return 0;
        Guid guid = wanted == ~0ULL ? classes.at(class_number).next : wanted;
        while (guids.contains(guid))
            ++guid;
        unsigned guid32 = short_form(guid);
        while (guids32.contains(guid32))
            ++guid32;
        guids[guid] = { class_number, guid32 };
        guids32[guid32] = guid;
        if (wanted == ~0ULL && guid >= classes[class_number].base)
            classes[class_number].next = guid + 1;
        return guid;
    }
    bool release(Guid guid)
    {
        auto const found = guids.find(guid);
        if (found == guids.end())
            return false;
        guids32.erase(found->second.guid32);
        guids.erase(found);
        return true;
    }
};

testing::AssertionResult agrees(CGuidMgr const &manager, GuidModel const &model)
{
    if (manager.GetCount() != model.guids.size())
        return testing::AssertionFailure() << manager.GetCount() << " identifiers";
    for (auto const &[guid, info] : model.guids) {
        if (!manager.IsGuidExist(guid) || !manager.IsGuid32Exist(info.guid32)
            || manager.GetGuidClass(guid) != info.class_number
            || manager.GetGuid32(guid) != info.guid32)
            return testing::AssertionFailure() << "identifier " << guid;
    }
    return testing::AssertionSuccess();
}

TEST(GuidMgr, AgreesWithAModelWhereEverythingClashes)
{
    // Around the ends of both ranges, and where hashed short forms meet those of small values.
    Guid const places[] = { 1, 0xFFFFFF80, 0xFFFFFFFFFFFFFF80, 0x123456789ABCDEF0, 0x025E6100 };
    for (unsigned seed = 1; seed <= 2; ++seed) {
        std::mt19937 random(seed);
        CGuidMgr manager(1);
        GuidModel model;
        for (unsigned i = 0; i < std::size(places); ++i) {
            manager.SetClassBaseValue(i, places[i]);
            model.classes[i] = { places[i], places[i] };
        }
        unsigned const width = seed % 2 == 0 ? 600 : 100;
        for (int step = 0; step < 12000; ++step) {
            auto const class_number = static_cast<unsigned>(random() % std::size(places));
            Guid const guid = places[class_number] + random() % width;
            switch (random() % 8) {
            case 0:
            case 1:
                ASSERT_EQ(manager.ReleaseGuid(guid), model.release(guid));
                break;
            case 2: {
                auto const guid32 = static_cast<unsigned>(guid);
                auto const found = model.guids32.find(guid32);
                bool const held = found != model.guids32.end() && model.release(found->second);
                ASSERT_EQ(manager.ReleaseGuid32(guid32), held);
                break;
            }
            case 3:
                if (step % 50 == 0) {
                    CGuidMgr copy(1);
                    copy = manager;
                    manager = copy;
                }
                [[fallthrough]];
            case 4: // while there is room: of one class that wraps around, the fresh ones pile up
                if (model.guids.size() >= 1500)
                    break;
                ASSERT_EQ(manager.GetNewGuid(CGuidMgr::fresh, class_number),
                    model.get_new(~0ULL, class_number));
                break;
            default:
                ASSERT_EQ(
                    manager.GetNewGuid(guid, class_number), model.get_new(guid, class_number));
            }
            if (step % 1000 == 0) {
                ASSERT_TRUE(agrees(manager, model)) << "step " << step;
            }
        }
        ASSERT_TRUE(agrees(manager, model));
        ASSERT_TRUE(agrees(CGuidMgr(manager), model));
    }
}

TEST(GuidMgr, AMillionOfMixedClassesThatClashAreNoTrouble)
{
    CGuidMgr manager(1);
    constexpr Guid wanted = 0x5000000000;
    for (unsigned i = 0; i < 500000; ++i) {
        ASSERT_EQ(manager.GetNewGuid(wanted, i % 5), wanted + i); // all of them want the same one
        ASSERT_NE(manager.GetNewGuid(i % 2 ? CGuidMgr::fresh : wanted / 2 + i / 3, i % 7), 0U);
    }
    for (Guid i = 200000; i < 300000; i += 2) {
        ASSERT_TRUE(manager.ReleaseGuid(wanted + i));
        ASSERT_EQ(manager.GetNewGuid(wanted, 6), wanted + i);
        ASSERT_EQ(manager.GetGuidClass(wanted + i), 6U);
    }
    EXPECT_EQ(manager.GetCount(), 1000000U);
}

TEST(GuidMgr, HashesAreThoseOfFilesWrittenBefore)
{
    CGuidMgr manager(5);
    EXPECT_EQ(manager.GetClassBaseValue(0), 5U);
    EXPECT_EQ(manager.GetClassBaseValue(7), 0U); // none yet
    EXPECT_EQ(manager.GetNewGuid(CGuidMgr::fresh, 1), 0x5BCA7C69B794F8CEU);
    EXPECT_EQ(manager.GetNewGuid(CGuidMgr::fresh, 7), 0x828A4CC485149963U);
    EXPECT_EQ(manager.GetNewGuid(CGuidMgr::fresh, 7), 0x828A4CC485149964U);
    EXPECT_EQ(manager.GetNewGuid(CGuidMgr::fresh, 0xFFFFFFFF), 0x36D5A7ACFE812F64U);
    EXPECT_EQ(manager.GetClassBaseValue(7), 0x828A4CC485149963U);
    EXPECT_EQ(manager.GetGuid32(0x5BCA7C69B794F8CE), 0x54F3DBBFU);
    EXPECT_EQ(manager.GetGuid32(0x828A4CC485149963), 0x37AF5187U);
    EXPECT_EQ(manager.MakeGuid32(0xFFFFFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(manager.MakeGuid32(0x100000000), 0xC169E3BAU);
    EXPECT_EQ(manager.MakeGuid32(0x123456789ABCDEF0), 0x025E6125U);
    EXPECT_EQ(manager.MakeGuid32(0x5BCA7C69B794F8CE), 0x54F3DBC0U); // the next one: it is taken

    manager.RemoveAll(); // class 0 counts from its hash then, like any other
    EXPECT_EQ(manager.GetNewGuid(CGuidMgr::fresh, 0), 0x77CFA1EEF01BCA90U);
}

TEST(GuidMgr, ShortFormsAreAServiceOfTheirOwnAndZeroIsNoIdentifier)
{
    CGuidMgr manager(100);
    EXPECT_EQ(manager.GetNewGuid32(CGuidMgr::fresh32, 0), 100U);
    EXPECT_EQ(manager.GetNewGuid32(100, 4), 101U);
    EXPECT_EQ(manager.GetGuidClass(101), 4U);
    ASSERT_EQ(manager.GetNewGuid(0x100000000, 0), 0x100000000U); // whose short form is taken now
    EXPECT_EQ(manager.GetNewGuid32(0xC169E3BA, 0), 0xC169E3BBU);
    EXPECT_EQ(manager.GetGuid32(0xC169E3BA), 0xC169E3BBU);
    EXPECT_TRUE(manager.ReleaseGuid32(0xC169E3BB));
    EXPECT_FALSE(manager.IsGuidExist(0xC169E3BA));
    EXPECT_EQ(manager.GetNewGuid(0, 3) + manager.GetNewGuid32(0, 3), 0U);
    EXPECT_EQ(manager.GetGuidClass(9) + manager.GetGuid32(9), 0U);
    manager.SetFlags(3, true);
    manager.SetFlags(1, false);
    EXPECT_EQ(CGuidMgr(manager).IsFlagSet(GuidFlags { 6 }), true);
    EXPECT_FALSE(manager.IsFlagSet(GuidFlags { 1 }));
}

TEST(GuidMgr, ThreadsShareOneAndAssignEachOther)
{
    CGuidMgr shared(1), a(1), b(1);
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                (t % 2 == 0 ? a : b) = t % 2 == 0 ? b : a;
                b.ReleaseGuid(a.GetNewGuid(7, t));
            }
            for (int i = 0; i < 5000; ++i)
                shared.GetNewGuid(CGuidMgr::fresh, 0);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(shared.GetNewGuid(CGuidMgr::fresh, 0), 20001U);
}

} // namespace
