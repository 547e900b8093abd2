// SPDX-License-Identifier: MIT
#include "kortools/files/file_types.h"

#include "kortools/archive/archive.h"
#include "kortools/files/file_type_registry.h"
#include "tests/support/scoped_locale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

using String = CXTString<wchar_t>;

namespace {

using Texts = std::vector<std::wstring>;

// Begins each test with the library's own types.
class FileTypes : public testing::Test {
protected:
    ~FileTypes() override { kortools::files::destroy_file_types(); }
};

CFileExt make_type(wchar_t const *extensions, unsigned int file_class, unsigned int loader = 7)
{
    CFileExt type;
    type.m_description = extensions;
    type.m_extensions = extensions;
    type.m_class = file_class;
    type.m_properties = fileKind3D | 0x1;
    type.m_loader = loader;
    return type;
}

Texts descriptions(unsigned int filter)
{
    unsigned int count = 99;
    CFileExt *const types = fileGetRegisteredFiles(count, filter);
    Texts result;
    for (unsigned int i = 0; i < count; ++i)
        result.emplace_back(types[i].m_description);
    EXPECT_EQ(types == nullptr, count == 0);
    fileFreeRegisteredFiles(types, count);
    return result;
}

Texts as_vector(CXArray<String> const &array)
{
    return { array.begin(), array.end() };
}

} // namespace

TEST_F(FileTypes, TheLibrarysOwnAreFoundByNameAndByClass)
{
    struct Row {
        wchar_t const *name;
        char const (&file_class)[5];
        unsigned int kind;
        bool loads;
        bool saves;
        wchar_t const *main_extension;
    };
    Row const rows[] = { { L"movie.FLV", "MOV ", fileKindVideo, true, false, L".flv" },
        { L"C:\\a.b\\x.DiB", "BMP ", fileKindBitmap, true, false, L".bmp" },
        { L"depth.kor", "ZFIL", fileKindBitmap, true, true, L".kor" },
        { L"http://h/index.html?x=a.zip", "IHTM", fileKindWebPage, true, false, L".htm" },
        { L"a.tar.gz", "GZ  ", fileKindArchive, false, false, L".gz" },
        { L"a.zip", "ZIP ", fileKindArchive, true, true, L".zip" } };
    for (Row const &row : rows) {
        SCOPED_TRACE(CXTString<char>(row.name).GetConstBuffer());
        unsigned int const loader = row.loads ? 0x42524E53 : 0x554E4B4E; // BRNS, UNKN
        unsigned int const saver = row.saves ? 0x42524E53 : 0x554E4B4E;
        EXPECT_EQ(fileGetClass(row.name), fileMakeCode(row.file_class));
        EXPECT_EQ(fileGetKindOf(row.name), row.kind);
        EXPECT_EQ(fileGetLoader(row.name), loader);
        EXPECT_EQ(fileGetSaver(row.name), saver);
        EXPECT_EQ(fileGetMainExtension(row.name), row.main_extension);
        EXPECT_EQ(fileGetKindOf(fileMakeCode(row.file_class)), row.kind);
    }
    EXPECT_EQ(fileGetMainExtension(fileMakeCode("MOV ")), L".mov"); // the first of two
    EXPECT_EQ(fileGetProperties(fileMakeCode("AVI ")), 0x10113U);
}

TEST_F(FileTypes, ListsAreSortedAndFiltered)
{
    Texts const all = descriptions(0);
    ASSERT_EQ(all.size(), 31U);
    auto const place
        = [&](wchar_t const *text) { return std::ranges::find(all, text) - all.begin(); };
    EXPECT_LT(place(L"gz files"), place(L"HDR files"));
    EXPECT_TRUE(descriptions(fileKindArchive | fileCanSave) == Texts { L"Zip files" });
    EXPECT_EQ(descriptions(fileKind3D | fileKindArchive | fileCanLoad).size(), 5U);

    CXArray<String> extensions;
    extensions.Add(L"first");
    EXPECT_EQ(fileGetExtensionArray(fileMakeCode("BMP "), extensions), 2);
    EXPECT_EQ(fileGetExtensionArray(fileMakeCode("MOV "), extensions, false), 1);
    EXPECT_TRUE((as_vector(extensions) == Texts { L"first", L".bmp", L".dib", L"mov" }));
    extensions.RemoveAll();
    EXPECT_EQ(fileGetExtensionArrayByProperty(fileKindVideo, extensions, false), 9); // .wmv once
    EXPECT_EQ(fileGetExtensionArrayByProperty(fileKind3D | 0x3, extensions, true, true), 5);
    EXPECT_EQ(extensions[9], L".max");
}

// Of the oldest type that has the extension, or is of the class, with a plain search of them all.
TEST_F(FileTypes, AnswersAgreeWithASearchWhileTypesComeAndGo)
{
    std::mt19937 random(5);
    wchar_t const *const lists[]
        = { L".q1", L".Q1|.q2", L".q2|.q3|.q1", L".q3", L"||.q2|", L"", L".q1|.Q1" };
    std::vector<CFileExt> model;
    for (int step = 0; step < 1000; ++step) {
        auto const file_class = static_cast<unsigned int>(1 + random() % 4);
        auto const loader = static_cast<unsigned int>(random() % 3);
        if (random() % 3) {
            CFileExt type = make_type(lists[random() % std::size(lists)], file_class, 1 + loader);
            fileRegisterFile(type);
            model.push_back(type);
        } else {
            fileUnregisterFile(file_class, loader);
            std::erase_if(model, [&](CFileExt const &type) {
                return type.m_class == file_class && (!loader || type.m_loader == loader);
            });
        }
        for (wchar_t const *const name : { L"x.q1", L"x.Q2", L"x.q3" }) {
            String const extension = String(name).Right(3).MakeLower();
            auto const found = std::ranges::find_if(model, [&](CFileExt type) {
                return (type.m_extensions.MakeLower() + L'|').Find(L'.' + extension.Right(2) + L'|')
                    >= 0;
            });
            CFileExt type;
            ASSERT_EQ(fileGetFileExt(name, type), found != model.end()) << "step " << step;
            ASSERT_EQ(fileGetLoader(name), found == model.end() ? 0 : found->m_loader);
            ASSERT_EQ(fileFindParser(name), found == model.end() ? 0 : found->m_class);
        }
        auto const found = std::ranges::find(model, file_class, &CFileExt::m_class);
        CFileExt type;
        ASSERT_EQ(fileGetExtensionInfo(file_class, type), found != model.end());
        if (found != model.end()) {
            ASSERT_EQ(type.m_extensions, found->m_extensions);
        }
    }
}

TEST_F(FileTypes, OthersAnswerWhenTheFirstIsRemoved)
{
    CFileExt type = make_type(L".WMV|.wmv", 9); // which is one extension
    fileRegisterFile(type);
    unsigned int const parsers[] = { fileMakeCode("MPG4"), fileMakeCode("WMV "), 9, 0 };
    for (unsigned int i = 0; i < std::size(parsers); ++i)
        EXPECT_EQ(fileFindParser(L"a.wmv", i), parsers[i]);
    fileUnregisterFile(fileMakeCode("MPG4"), 7); // not its loader
    EXPECT_EQ(fileGetClass(L"a.wmv"), fileMakeCode("MPG4"));
    fileUnregisterFile(fileMakeCode("MPG4"));
    EXPECT_EQ(fileGetClass(L"a.wmv"), fileMakeCode("WMV "));
    kortools::files::destroy_file_types();
    EXPECT_EQ(fileGetClass(L"a.wmv"), fileMakeCode("MPG4"));
}

TEST_F(FileTypes, TheLettersOfTheLocaleDoNotHideAnExtension)
{
    ScopedLocale const locale({ "tr_TR.UTF-8", "Turkish_Turkey.1254" }); // where I has another i
    EXPECT_EQ(fileGetClass(L"MAP.PIC"), fileMakeCode("PIC "));
}

TEST_F(FileTypes, ThreadsMayRegisterAndAskAtOnce)
{
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (unsigned int number = 1; number <= 3; ++number) {
        threads.emplace_back([&wrong, number] {
            std::wstring const extension = L".t" + std::to_wstring(number);
            for (int i = 0; i < 200; ++i) {
                CFileExt type = make_type(extension.c_str(), number);
                fileRegisterFile(type);
                wrong += fileGetClass(L"x" + extension) != number;
                unsigned int count = 0;
                fileFreeRegisteredFiles(fileGetRegisteredFiles(count), count);
                wrong += count < 32 || count > 34;
                fileUnregisterFile(number);
                wrong += fileGetFileExt(L"x" + extension, type);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}
