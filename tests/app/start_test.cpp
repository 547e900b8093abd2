// SPDX-License-Identifier: MIT
#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/exit_callbacks.h"
#include "kortools/app/log.h"
#include "kortools/app/parallel.h"
#include "kortools/app/start.h"
#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/exception.h"
#include "kortools/files/file_types.h"
#include "kortools/files/plugins.h"
#include "tests/support/temp_folder.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#ifdef _WIN32
#include <cstring>
#include <windows.h>

#include <psapi.h>
#else
#include <malloc.h>
#endif

namespace {

std::string read(std::wstring const &path)
{
    std::ifstream file { std::filesystem::path(path) };
    return { std::istreambuf_iterator<char>(file), {} };
}

TEST(Start, OnlyTheFirstOneCountsUntilTheEnd)
{
    TempFolder folder;
    std::wstring const log = folder.GetFile(L"first.log");
    std::wstring const other = folder.GetFile(L"second.log");
    OMPSetMaxThreadCount(1);
    std::thread([&] {
        InitBrantisApplication("Viewer", L"C:\\Apps\\Viewer.exe", 0, log.c_str());
        EXPECT_EQ(GetApplicationMainThreadID(), CXThread::GetCurrentThreadID());
    }).join();
    InitBrantisApplication("Other", L"C:\\Apps\\Other.exe", korFileTypes, other.c_str());
    InitKorTools();
    EXPECT_NE(GetApplicationMainThreadID(), CXThread::GetCurrentThreadID());
    EXPECT_EQ(GetInternalProductName(), L"Viewer");
    EXPECT_EQ(GetPluginsDirectory(), L"C:\\Apps\\Plugins\\");
    WriteToLogFile(L"still the first\n");

    CloseBrantisApplication(korAllState);
    EXPECT_FALSE(IsLogFileEnabled());
    std::string const written = read(log);
    std::string const line = "InitBrantisApplication\n" + std::to_string(OMPGetMaxThreadCount())
        + " core will be used by default (use OMPSetMaxThreadCount, or define OMP_NUM_THREADS under"
          " linux, to change the behavior)\nstill the first\n";
    EXPECT_TRUE(written.ends_with(line)) << written;
    EXPECT_FALSE(std::filesystem::exists(other));

    InitBrantisApplication(nullptr, nullptr, 0, other.c_str()); // again, and with what follows
    EXPECT_EQ(GetApplicationMainThreadID(), CXThread::GetCurrentThreadID());
    EXPECT_TRUE(IsLogFileEnabled());
    CloseBrantisApplication();
    EXPECT_NE(read(other).find("core will be used"), std::string::npos);
}

TEST(Start, TheRegistryOfFileTypesComesAndGoesWithItsFlag)
{
    CFileExt own { L"Own files", L".kortest", fileMakeCode("KTST"), fileKind3D };
    InitKorTools(korFileTypes);
    EXPECT_EQ(fileGetClass(L"a.bmp"), fileMakeCode("BMP "));
    fileRegisterFile(own);
    CloseKorTools();
    EXPECT_EQ(fileGetClass(L"a.kortest"), own.m_class);
    InitKorTools(korFileTypes);
    CloseKorTools(korFileTypes);
    EXPECT_EQ(fileGetClass(L"a.kortest"), 0U);
}

TEST(Start, ArgumentsThatTheRuntimeDoesNotAcceptEndNothing)
{
    InitKorTools(korInvalidParameters);
    errno = 0;
#ifdef _WIN32
    EXPECT_EQ(strcpy_s(nullptr, 5, "text"), EINVAL);
#else
    EXPECT_EQ(fdopen(1, "no mode"), nullptr);
#endif
    EXPECT_EQ(errno, EINVAL);
    CloseKorTools();
}

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
    AddApplicationExitCallback(note<'x'>, 0xFFFFFFFF);
    AddApplicationExitCallback(note<'0'>, 0);
    EXPECT_EQ(get_calls(), "05x");
    EXPECT_EQ(get_calls(), "");

    AddApplicationExitCallback(note<'a'>, 5);
    AddApplicationExitCallback(note<'c'>, 3);
    AddApplicationExitCallback(note<'a'>, 1); // in its last order
    EXPECT_EQ(get_calls(korAllState), "ac");
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
}

// Bytes on the heap (0 where they cannot be counted) and open handles.
std::pair<std::size_t, std::size_t> count_resources()
{
#ifdef _WIN32
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    std::size_t bytes = 0;
    _HEAPINFO info {};
    while (_heapwalk(&info) == _HEAPOK)
        bytes += info._useflag == _USEDENTRY ? info._size : 0;
    return { bytes, handles };
#else
    auto const handles = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    return { mallinfo2().uordblks, static_cast<std::size_t>(handles) };
#endif
}

void start_and_end(wchar_t const *log)
{
    constexpr unsigned int all
        = korFileTypes | korFaultSignals | korInvalidParameters | korAllState;
    InitBrantisApplication("Viewer", L"C:\\Apps\\Viewer.exe", all, log);
    AddApplicationExitCallback([] { XSetThreadException(new CXUserException); }, 1);
    SetInternalProductName(L"A name that does not fit a string by itself", 16);
    GetCommonApplicationDataPath();
    fileGetClass(L"a.bmp");
    CloseBrantisApplication(all);
}

void start_and_end_often(int count)
{
    TempFolder folder;
    std::wstring const log = folder.GetFile(L"start.log");
    for (int i = 0; i < count; ++i)
        start_and_end(i % 100 == 0 ? log.c_str() : nullptr);
}

TEST(Start, AThousandTimesLeaksNothing)
{
    start_and_end_often(500); // until the heap has filled its caches
    auto const before = count_resources();
    start_and_end_often(1000);
    auto const after = count_resources();
    EXPECT_LT(after.first, before.first + 24000); // no block takes less than 24 bytes
    EXPECT_LE(after.second, before.second);
}

} // namespace
