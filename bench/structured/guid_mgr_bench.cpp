// SPDX-License-Identifier: MIT
// Identifiers per second: CGuidMgr beside the set and the counter that a user would write. The
// manager also keeps each identifier's class and short form, and locks.
#include "kortools/data/guid_mgr.h"

#include <benchmark/benchmark.h>
#include <random>
#include <unordered_set>
#include <vector>

namespace {

struct KorGuids {
    CGuidMgr manager { 1 };
    unsigned class_number = 0;
    auto make_fresh() { return manager.GetNewGuid(CGuidMgr::fresh, class_number++ % 16); }
    auto register_one(unsigned long long guid) { return manager.GetNewGuid(guid, 3); }
};

struct SetAndCounter {
    std::unordered_set<unsigned long long> taken;
    unsigned long long next = 1;
    unsigned long long register_one(unsigned long long guid)
    {
        while (!taken.insert(guid).second)
            ++guid;
        return guid;
    }
    unsigned long long make_fresh()
    {
        next = register_one(next) + 1;
        return next - 1;
    }
};

void count_identifiers(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Guids> void BM_Fresh(benchmark::State &state)
{
    for (auto _ : state) {
        Guids guids;
        for (int i = 0; i < state.range(0); ++i)
            benchmark::DoNotOptimize(guids.make_fresh());
    }
    count_identifiers(state);
}
BENCHMARK(BM_Fresh<KorGuids>)->Arg(1000)->Arg(1000000);
BENCHMARK(BM_Fresh<SetAndCounter>)->Arg(1000)->Arg(1000000);

// Many values occur twice or more.
std::vector<unsigned long long> make_wanted(std::size_t count)
{
    std::mt19937_64 random(1);
    std::vector<unsigned long long> wanted(count);
    for (auto &value : wanted)
        value = 0x7000000000 + random() % count * 64;
    return wanted;
}

template <class Guids> void BM_Register(benchmark::State &state)
{
    auto const wanted = make_wanted(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        Guids guids;
        for (auto const guid : wanted)
            benchmark::DoNotOptimize(guids.register_one(guid));
    }
    count_identifiers(state);
}
BENCHMARK(BM_Register<KorGuids>)->Arg(1000)->Arg(1000000);
BENCHMARK(BM_Register<SetAndCounter>)->Arg(1000)->Arg(1000000);

// All want the same one; the set walks over the row each time.
template <class Guids> void BM_Clash(benchmark::State &state)
{
    for (auto _ : state) {
        Guids guids;
        for (int i = 0; i < state.range(0); ++i) {
            if (guids.register_one(5) != 5ULL + static_cast<unsigned>(i))
                state.SkipWithError("wrong identifier");
        }
    }
    count_identifiers(state);
}
BENCHMARK(BM_Clash<KorGuids>)->Arg(1000)->Arg(10000)->Arg(1000000);
BENCHMARK(BM_Clash<SetAndCounter>)->Arg(1000)->Arg(10000);

} // namespace

BENCHMARK_MAIN();
