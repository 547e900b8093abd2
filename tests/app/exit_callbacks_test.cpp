// SPDX-License-Identifier: MIT
#include "kortools/app/exit_callbacks.h"
#include "kortools/app/start.h"
#include "kortools/archive/exception.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

std::string s_calls;

template <char letter> void note()
{
    s_calls += letter;
}

// What was called at the end of a start.
std::string get_calls(unsigned int flags = 0)
{
    s_calls.clear();
    InitKorTools();
    CloseKorTools(flags);
    return std::exchange(s_calls, {});
}

template <char... letters> void add_all(unsigned int order)
{
    (AddApplicationExitCallback(note<letters>, order--), ...);
}

void add_and_remove()
{
    s_calls += '*';
    AddApplicationExitCallback(note<'n'>, 0);
    RemoveApplicationExitCallback(note<'z'>);
    CloseKorTools(korAllState); // ended already
    CloseBrantisApplication();
}

void throw_one()
{
    kortools::archive::throw_exception(new CXUserException);
}

TEST(ExitCallbacks, RunOnceByAscendingUnsignedOrder)
{
    AddApplicationExitCallback(note<'5'>, 5);
    AddApplicationExitCallback(note<'1'>, 1);
    AddApplicationExitCallback(note<'3'>, 3);
    AddApplicationExitCallback(note<'x'>, 0xFFFFFFFF);
    AddApplicationExitCallback(note<'8'>, 0x80000000);
    AddApplicationExitCallback(note<'0'>, 0);
    AddApplicationExitCallback(nullptr, 2);
    EXPECT_EQ(get_calls(), "01358x");
    EXPECT_EQ(get_calls(), "");

    add_all<'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'l', 'm', 'n', 'o'>(100);
    AddApplicationExitCallback(note<'a'>, 0); // in its last order
    RemoveApplicationExitCallback(note<'b'>, 7);
    RemoveApplicationExitCallback(note<'b'>);
    EXPECT_EQ(get_calls(korAllState), "aonmlkjihgfedc");
}

TEST(ExitCallbacks, MayChangeTheTableEndAgainAndThrow)
{
    AddApplicationExitCallback(add_and_remove, 1);
    AddApplicationExitCallback(throw_one, 2);
    AddApplicationExitCallback(note<'b'>, 3);
    AddApplicationExitCallback(note<'z'>, 4);
    EXPECT_EQ(get_calls(), "*b");
    EXPECT_EQ(XGetThreadException(), nullptr);
    EXPECT_EQ(get_calls(), "n"); // what was added by a callback waits for the next end

    AddApplicationExitCallback(add_and_remove, 1);
    EXPECT_EQ(get_calls(korAllState), "*"); // and is freed with everything else
    EXPECT_EQ(get_calls(), "");

    AddApplicationExitCallback(note<'a'>, 1);
    CloseKorTools(); // without a start nothing happens
    EXPECT_EQ(s_calls, "");
    RemoveApplicationExitCallback(note<'a'>);
    EXPECT_EQ(get_calls(), "");
}

} // namespace
