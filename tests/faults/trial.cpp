// SPDX-License-Identifier: MIT
#include "tests/faults/trial.h"

#include "kortools/archive/exception.h"
#include "tests/faults/injection.h"

#include <exception>
#include <typeinfo>

namespace kor_test {
namespace {

constexpr int call_limit = 100'000; // what makes more calls is not worth the time

void clear(TempFolder const &folder)
{
    for (auto const &entry : std::filesystem::directory_iterator(folder.GetPath()))
        std::filesystem::remove_all(entry.path());
}

// Whether it was done.
bool run(Trial const &trial, FaultPlan const &plan)
{
    char const *escaped = nullptr;
    bool done = false;
    try {
        Injection const injection(plan);
        done = trial.run();
    } catch (CXException *exception) {
        exception->Delete();
    } catch (std::exception const &error) {
        escaped = typeid(error).name();
    }
    EXPECT_EQ(std::string(escaped ? escaped : ""), "") << "no interface promises to throw that";
    return done;
}

// The number of faults, 0 when the run made fewer calls.
int try_fault(Subject const &subject, TempFolder const &folder, FaultPlan const &plan)
{
    clear(folder);
    Trial const trial = subject.make(folder);
    bool const done = run(trial, plan);
    int const faults = get_fault_count();
    bool const must_end_well = faults == 0 || plan.fault >= Fault::Interrupt;
    EXPECT_TRUE(done || !must_end_well) << "it was not done";
    trial.check(done);
    return faults;
}

void try_fault_and_count(
    Subject const &subject, TempFolder const &folder, FaultPlan const &plan, int &faults)
{
    long const blocks = get_block_count();
    int const files = get_open_files();
    faults = try_fault(subject, folder, plan);
    if (!testing::Test::HasFailure()) { // failures take memory, too
        EXPECT_TRUE(get_block_count() == blocks || !subject.frees_all) << "memory was leaked";
        EXPECT_EQ(get_open_files(), files) << "files are still open";
    }
    if (testing::Test::HasFailure())
        ADD_FAILURE() << describe(plan);
}

} // namespace

void try_all_faults(Subject const &subject)
{
    TempFolder const folder;
    for (int i = 0; i < 2; ++i) // what is made once and kept
        try_fault(subject, folder, { Fault::Error, call_limit, false });
    ASSERT_FALSE(testing::Test::HasFailure()) << "without a fault";
    int tried = 0;
    for (Fault const fault : { Fault::NoMemory, Fault::Error, Fault::Interrupt, Fault::Short }) {
        if (fault == Fault::NoMemory && !subject.lacks_memory)
            continue;
        for (bool const forever : { false, true }) {
            if (testing::Test::HasFailure())
                break;
            if (forever && fault == Fault::Interrupt)
                continue; // nobody would give up
            int first = 0;
            int faults = 0;
            do {
                try_fault_and_count(subject, folder, { fault, ++first, forever }, faults);
                tried += faults;
            } while (faults > 0 && first < call_limit && !testing::Test::HasFailure());
        }
    }
    testing::Test::RecordProperty("faults", tried);
    std::printf("%d faults\n", tried);
}

} // namespace kor_test
