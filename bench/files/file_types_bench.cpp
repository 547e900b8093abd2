// SPDX-License-Identifier: MIT
// The registry of file types beside Qt's database of MIME types: the type of a name, its main
// extension, and all types sorted by description. Qt knows some 800 types and 1000 extensions, ours
// the library's own 31; both look the extension up in a hash table. No file is opened.
#include "kortools/files/file_types.h"

#include <QMimeDatabase>
#include <benchmark/benchmark.h>

#include <iterator>
#include <vector>

namespace {

struct Name {
    wchar_t const *path; // with '\\' for '/'
    char const *native;
    char const (&file_class)[5];
    char const *mime_type;
};

Name const names[] = {
    { L"C:\\home\\ann\\scenes\\sky.bmp", "/home/ann/scenes/sky.bmp", "BMP ", "image/bmp" },
    { L"C:\\home\\ann\\scenes\\WOOD.BMP", "/home/ann/scenes/WOOD.BMP", "BMP ", "image/bmp" },
    { L"C:\\home\\ann\\take 3.mov", "/home/ann/take 3.mov", "MOV ", "video/quicktime" },
    { L"C:\\home\\ann\\back up.zip", "/home/ann/back up.zip", "ZIP ", "application/zip" },
    { L"C:\\home\\ann\\index.html", "/home/ann/index.html", "IHTM", "text/html" },
    { L"C:\\home\\ann\\bell.wav", "/home/ann/bell.wav", "AIWV", "audio/x-wav" },
};

void BM_TypeOfName_KorTools(benchmark::State &state)
{
    bool right = true;
    std::size_t i = 0;
    std::vector<CXTString<wchar_t>> paths;
    for (Name const &name : names)
        paths.emplace_back(name.path);
    for (auto _ : state) {
        right &= fileGetClass(paths[i]) == fileMakeCode(names[i].file_class);
        i = (i + 1) % std::size(names);
    }
    if (!right)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_TypeOfName_KorTools);

void BM_TypeOfName_QMimeDatabase(benchmark::State &state)
{
    QMimeDatabase const database;
    bool right = true;
    std::size_t i = 0;
    std::vector<QString> paths;
    std::vector<QMimeType> types;
    for (Name const &name : names) {
        paths.emplace_back(name.native);
        types.push_back(database.mimeTypeForName(name.mime_type));
    }
    for (auto _ : state) {
        right &= database.mimeTypeForFile(paths[i], QMimeDatabase::MatchExtension) == types[i];
        i = (i + 1) % std::size(names);
    }
    if (!right)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_TypeOfName_QMimeDatabase);

void BM_MainExtension_KorTools(benchmark::State &state)
{
    CXTString<wchar_t> const path = names[4].path;
    for (auto _ : state) {
        if (fileGetMainExtension(path).GetLength() != 4)
            state.SkipWithError("wrong result");
    }
}
BENCHMARK(BM_MainExtension_KorTools);

void BM_MainExtension_QMimeDatabase(benchmark::State &state)
{
    QMimeDatabase const database;
    QString const path = names[4].native;
    for (auto _ : state) {
        QMimeType const type = database.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
        if (type.preferredSuffix().size() != 4)
            state.SkipWithError("wrong result");
    }
}
BENCHMARK(BM_MainExtension_QMimeDatabase);

// Not a pair: Qt has no list for dialogs, and reads its descriptions from files.
void BM_SortedList_KorTools(benchmark::State &state)
{
    for (auto _ : state) {
        unsigned int count = 0;
        CFileExt *const types = fileGetRegisteredFiles(count);
        if (count != 31)
            state.SkipWithError("wrong result");
        fileFreeRegisteredFiles(types, count);
    }
}
BENCHMARK(BM_SortedList_KorTools);

} // namespace

BENCHMARK_MAIN();
