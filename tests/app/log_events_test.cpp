// SPDX-License-Identifier: MIT
#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/log_events.h"
#include "kortools/files/directories.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/message_hook.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

using kortools::platform::report_window_message;

std::string read(wchar_t const *name)
{
    std::string const native
        = kortools::platform::to_native_path(GetUserApplicationDataPath() + name);
    std::string text = kor_test::read_file(std::u8string(native.begin(), native.end()));
    std::erase(text, '\r'); // of the system's line ends
    return text;
}

TEST(EventLog, HasALineForEachMessageToAWindowOfTheThread)
{
    TempFolder const folder;
    SetInternalProductName(folder.GetPath().filename().wstring().c_str());
    CXTString<wchar_t> const data = GetUserApplicationDataPath();

    report_window_message({ 1, 0, 0, L"before", L"" });
    LogEvents();
    LogEvents(); // goes on
    report_window_message({ 0x113, 0x123456789ABCDEF0, ~0ULL, L"caf\u00E9 %s", L"KorView" });
    std::thread([] { report_window_message({ 2, 0, 0, L"another thread's", L"" }); }).join();
    std::string const mark = "\xEF\xBB\xBF";
    std::string const lines
        = "Msg 0x00000113 lParam 0xffffffff wParam 0x9abcdef0 Window caf\xC3\xA9"
          " %s Class KorView\n";
    EXPECT_EQ(read(L"eventsLog1.txt"), mark + lines); // while it is written
    UnlogEvents();
    UnlogEvents();
    report_window_message({ 3, 0, 0, L"after", L"" });
    EXPECT_EQ(read(L"eventsLog1.txt"), mark + lines);
    SetInternalProductName(L"");
    EXPECT_TRUE(fileRemoveDirectory(data, true));
}

} // namespace
