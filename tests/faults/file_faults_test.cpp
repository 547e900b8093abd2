// SPDX-License-Identifier: MIT
// Faults in what reads and writes files: a save that fails leaves the old file whole, and nothing
// of its own beside it.
#include "kortools/files/module_image.h"
#include "kortools/kortools.h"
#include "kortools/platform/profile_store.h"
#include "tests/faults/injection.h"
#include "tests/faults/trial.h"

#include <cstdlib>
#include <memory>
#include <set>

using kor_test::Subject;
using kor_test::Trial;
using Text = CXTString<wchar_t>;

#ifdef __SANITIZE_ADDRESS__
// The parser of profiles loses a text when it finds no memory for its place.
extern "C" __attribute__((visibility("default"))) char const *__lsan_default_suppressions()
{
    return "leak:CSimpleIniTempl";
}
#endif

namespace {

std::string const old_bytes(3000, 'o');
std::string const new_bytes(5000, 'n');

Text path_of(TempFolder const &folder, wchar_t const *name)
{
    return folder.GetFile(name).c_str();
}

std::set<std::string> list(TempFolder const &folder)
{
    std::set<std::string> names;
    for (auto const &entry : std::filesystem::recursive_directory_iterator(folder.GetPath()))
        names.insert(entry.path().lexically_relative(folder.GetPath()).string());
    return names;
}

using Names = std::set<std::string>;

Trial write_file(TempFolder const &folder)
{
    Text const path = path_of(folder, L"file");
    auto const was_silent = std::make_shared<bool>(false);
    auto const run = [=] {
        CXFile file(path, CXFile::modeCreate | CXFile::modeWrite);
        *was_silent = !file.IsOpen();
        file.Write(old_bytes.data(), static_cast<unsigned>(old_bytes.size()));
        file.Seek(10, CXFile::begin);
        file.SetLength(2000);
        file.Write(new_bytes.data(), static_cast<unsigned>(new_bytes.size()));
        file.Flush();
        file.Close();
        return true;
    };
    return { run, [=, &folder](bool done) {
                EXPECT_FALSE(*was_silent) << "a constructor that fails throws";
                EXPECT_TRUE(!done || folder.Read("file") == std::string(10, 'o') + new_bytes);
            } };
}

Trial read_file(TempFolder const &folder)
{
    folder.Write("file", old_bytes);
    Text const path = path_of(folder, L"file");
    auto const bytes = std::make_shared<std::string>(4000, '\0');
    auto const had_reason = std::make_shared<bool>(true);
    auto const run = [=] {
        CXFile quiet(path, CXFile::modeRead | CXFile::shareDenyNone, false);
        CXFile file;
        CXFileException error;
        if (!file.Open(path, CXFile::modeRead | CXFile::shareDenyNone, &error)) {
            *had_reason = !file.IsOpen() && error.GetCause() != CXFileException::none;
            return false;
        }
        bytes->resize(file.Read(bytes->data(), 4000));
        return file.GetLength() == old_bytes.size() && quiet.IsOpen();
    };
    auto const check = [=, &folder](bool done) {
        EXPECT_TRUE(*had_reason);
        EXPECT_TRUE(!done || *bytes == old_bytes);
        EXPECT_EQ(folder.Read("file"), old_bytes);
    };
    return { run, check };
}

Trial copy_file(TempFolder const &folder)
{
    folder.Write("from", new_bytes);
    folder.Write("to", old_bytes);
    Text const from = path_of(folder, L"from");
    Text const to = path_of(folder, L"to");
    return { [=] { return fileCopy(from, to); },
        [&folder](bool done) {
            EXPECT_EQ(folder.Read("from"), new_bytes);
            EXPECT_EQ(folder.Read("to"), done ? new_bytes : old_bytes);
            EXPECT_EQ(list(folder), (Names { "from", "to" }));
        } };
}

Trial move_file(TempFolder const &folder)
{
    folder.Write("from", new_bytes);
    Text const from = path_of(folder, L"from");
    Text const to = path_of(folder, L"to");
    return { [=] { return fileRename(from, to); },
        [&folder](bool done) {
            EXPECT_EQ(list(folder), Names { done ? "to" : "from" });
            EXPECT_EQ(folder.Read(done ? "to" : "from"), new_bytes);
        } };
}

Trial make_folders(TempFolder const &folder)
{
    Text const path = path_of(folder, L"a/b/c");
    return { [=] { return fileCreateDirectory(path, true); },
        [&folder](bool done) { // without memory for their paths those that were made stay
            kor_test::FaultPlan const &plan = kor_test::get_fault_plan();
            if (done || plan.fault != kor_test::Fault::NoMemory || !plan.forever) {
                EXPECT_EQ(list(folder), (done ? Names { "a", "a/b", "a/b/c" } : Names {}));
            }
        } };
}

// What stays of a folder is whole.
Trial remove_folder(TempFolder const &folder)
{
    std::filesystem::create_directories(folder.GetPath() / "a/b");
    folder.Write("a/one", old_bytes);
    folder.Write("a/b/two", old_bytes);
    Text const path = path_of(folder, L"a");
    return { [=] { return fileRemoveDirectory(path, true); },
        [&folder](bool done) { EXPECT_TRUE(!done || list(folder).empty()); } };
}

Trial find_files(TempFolder const &folder)
{
    for (char const *name : { "a.kor", "b.kor", "c.txt", "a longer name that needs room.kor" })
        folder.Write(name, "");
    Text const path = path_of(folder, L"*.kor");
    Text const place = path_of(folder, L"");
    return { [=] {
                CXFileFind find;
                int found = 0;
                for (bool more = find.FindFile(path); more; ++found)
                    more = find.FindNextFile();
                xFileFindInfo info;
                return found == 3 && fileGetFileCount(place) == 4
                    && filePathContainMatchingFile(place, L"a*.kor", &info);
            },
        [&folder](bool) { EXPECT_EQ(list(folder).size(), 4U); } };
}

// The archive is cut, never wrong.
Trial store_archive(TempFolder const &folder)
{
    Text const path = path_of(folder, L"archive");
    auto const run = [=] {
        CXFile file(path, CXFile::modeCreate | CXFile::modeWrite);
        CXArchive archive(&file, CXArchive::store, CXArchive::minimum_buffer_size);
        for (int i = 0; i < 30; ++i)
            archive << i << Text(L"caf\u00E9");
        archive.Close();
        file.Close();
        return true;
    };
    auto const check = [=](bool done) {
        if (!done)
            return;
        CXFile file(path, CXFile::modeRead);
        CXArchive archive(&file, CXArchive::load);
        int number = 0;
        Text text;
        for (int i = 0; i < 30; ++i) {
            archive >> number >> text;
            EXPECT_TRUE(number == i && text == Text(L"caf\u00E9"));
        }
    };
    return { run, check };
}

Trial load_archive(TempFolder const &folder)
{
    Text const path = path_of(folder, L"archive");
    store_archive(folder).run();
    auto const run = [=] {
        CXFile file(path, CXFile::modeRead);
        CXArchive archive(&file, CXArchive::load, CXArchive::minimum_buffer_size);
        CXArray<Text> texts;
        int number = 0;
        for (int i = 0; i < 30; ++i) {
            Text text;
            archive >> number >> text;
            texts.Add(text);
        }
        return number == 29;
    };
    return { run, [](bool) {} };
}

constexpr wchar_t line[] = L"a line: caf\u00E9 \u65E5\u672C\n";

Trial write_text(TempFolder const &folder)
{
    Text const path = path_of(folder, L"text");
    auto const run = [=] {
        CStdioFileEx file(path,
            CXFile::modeCreate | CXFile::modeReadWrite | CStdioFileEx::typeUnicode
                | CStdioFileEx::unicodeUTF8);
        for (int i = 0; i < 3; ++i)
            file.WriteString(line);
        file.Close();
        return true;
    };
    return { run,
        [&folder](bool done) { EXPECT_TRUE(!done || folder.Read("text").size() == 3 + 3 * 21U); } };
}

Trial read_text(TempFolder const &folder)
{
    write_text(folder).run();
    Text const path = path_of(folder, L"text");
    auto const run = [=] {
        CStdioFileEx file(path, CXFile::modeRead);
        Text text;
        int lines = 0;
        while (file.ReadString(text))
            lines += text + L"\n" == line;
        Text all;
        file.Seek(0, CXFile::begin);
        return file.ReadText(all, 1000) && lines == 3;
    };
    return { run, [](bool) {} };
}

// An appended log keeps what was there, and gets whole lines.
Trial append_log(TempFolder const &folder)
{
    folder.Write("log.txt",
        "\xEF\xBB\xBF"
        "the first run\n");
    Text const path = path_of(folder, L"log.txt");
    auto const run = [=] {
        bool const open = SetLogFile(path, logFileAppend);
        WriteToLogFile(L"%s", L"a line of the second run\n");
        WriteToLogFile("%d narrow\n", 42);
        return open;
    };
    auto const check = [&folder](bool done) {
        CloseLogFile();
        std::string const text = folder.Read("log.txt");
        EXPECT_EQ(text.substr(0, 17),
            "\xEF\xBB\xBF"
            "the first run\n");
        EXPECT_TRUE(text.ends_with('\n'));
        EXPECT_TRUE(done || text.size() == 17);
    };
    return { run, check };
}

Trial save_preferences(TempFolder const &folder)
{
    Text const path = path_of(folder, L"prefs");
    auto const before = std::make_shared<CCustomData>();
    before->SetString(1, L"before");
    EXPECT_TRUE(before->SaveToPrefs(path, 7, 1) && before->SaveToPrefs(path, 8, 1));
    auto const after = std::make_shared<CCustomData>();
    after->SetString(1, L"after");
    after->SetArray(2, nullptr, 1000, 1);
    auto const check = [=, &folder](bool done) {
        CCustomData loaded;
        EXPECT_TRUE(loaded.LoadFromPrefs(path, 8, 1) && loaded.IsEqual(*before));
        EXPECT_TRUE(loaded.LoadFromPrefs(path, 7, 1));
        // The disk may fail when everything is written already.
        EXPECT_TRUE(loaded.IsEqual(*after) || (!done && loaded.IsEqual(*before)));
        EXPECT_TRUE(before->SaveToPrefs(path, 9, 1)) << "what was left behind is in the way";
        EXPECT_EQ(list(folder), Names { "prefs" });
    };
    return { [=] { return after->SaveToPrefs(path, 7, 1); }, check };
}

Trial load_preferences(TempFolder const &folder)
{
    Text const path = path_of(folder, L"prefs");
    auto const saved = std::make_shared<CCustomData>();
    saved->SetString(1, L"saved");
    EXPECT_TRUE(saved->SaveToPrefs(path, 7, 1));
    auto const loaded = std::make_shared<CCustomData>();
    loaded->SetInt(5, 5);
    return { [=] { return loaded->LoadFromPrefs(path, 7, 2, true); },
        [=](bool done) {
            EXPECT_TRUE(done ? loaded->IsEqual(*saved) : loaded->HasData(5) || !loaded->HasData());
        } };
}

// The settings of the user that are not written stay, however much of the file cannot be read.
Trial change_profile(TempFolder const &folder)
{
    using namespace kortools::platform;
    setenv("XDG_CONFIG_HOME", folder.GetPath().c_str(), 1);
    ProfilePlace const kept { L"faults", L"settings", L"kept" };
    ProfilePlace const changed { L"faults", L"settings", L"changed" };
    ProfilePlace const removed { L"faults", L"old", L"removed" };
    for (ProfilePlace const &place : { kept, changed, removed })
        EXPECT_TRUE(write_profile(place, ProfileValue(1)));
    release_profile();
    auto const text = std::make_shared<ProfileValue>(std::wstring(L"caf\u00E9"));
    auto const run = [=] {
        return read_profile(kept) == ProfileValue(1) && write_profile(changed, *text)
            && delete_profile(removed);
    };
    auto const check = [=, &folder](bool done) {
        release_profile();
        EXPECT_EQ(read_profile(kept), ProfileValue(1));
        auto const value = read_profile(changed);
        EXPECT_TRUE(value == *text || (!done && value == ProfileValue(1)));
        EXPECT_TRUE(!done || !read_profile(removed));
        EXPECT_EQ(list(folder).size(), 3U) << "folder, file and lock";
        release_profile();
    };
    return { run, check };
}

Trial read_library(TempFolder const &)
{
    using namespace kortools::files;
    auto const run = [] {
        bool done = true;
        for (char const *name : { "elf_gnu", "pe" }) {
            Text const path = Text(KOR_SAMPLES "/") + Text(name);
            FileImageSource const source(path.GetConstBuffer());
            if (!source.is_open())
                return false;
            ModuleImage const image
                = kortools::core::translate_shortage([&] { return read_module_image(source); });
            done = done && image.format != ImageFormat::None && !image.is_damaged;
        }
        return done;
    };
    return { run, [](bool) {} };
}

class FaultsOfFiles : public testing::TestWithParam<Subject> { };

TEST_P(FaultsOfFiles, AreReportedAndHarmless)
{
    kor_test::try_all_faults(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, FaultsOfFiles,
    testing::Values(Subject { "write_file", write_file }, Subject { "read_file", read_file },
        Subject { "copy_file", copy_file }, Subject { "move_file", move_file },
        Subject { "make_folders", make_folders }, Subject { "remove_folder", remove_folder },
        Subject { "find_files", find_files }, Subject { "store_archive", store_archive },
        Subject { "load_archive", load_archive }, Subject { "write_text", write_text },
        Subject { "read_text", read_text }, Subject { "append_log", append_log },
        Subject { "save_preferences", save_preferences },
        Subject { "load_preferences", load_preferences },
        Subject { "change_profile", change_profile, false },
        Subject { "read_library", read_library }),
    [](auto const &row) { return row.param.name; });

} // namespace
