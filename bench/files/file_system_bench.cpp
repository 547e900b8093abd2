// SPDX-License-Identifier: MIT
// Operations on the disk beside std::filesystem and Qt. A guarded test has a time-out, and pays for
// the thread that the call runs on.
#include "kortools/files/directories.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

namespace {

namespace fs = std::filesystem;

// A tree of `files` files, a hundred to a folder; removed with the object.
class Tree {
public:
    explicit Tree(long files)
        : m_path(fs::temp_directory_path() / "kortools-bench-files")
    {
        fs::remove_all(m_path);
        for (long i = 0; i < files; ++i) {
            fs::path const folder = m_path / std::to_string(i / 1000) / std::to_string(i / 100);
            if (i % 100 == 0)
                fs::create_directories(folder);
            std::ofstream(folder / ("file" + std::to_string(i))) << "text";
        }
    }
    ~Tree() { fs::remove_all(m_path); }
    Tree(Tree const &) = delete;
    Tree &operator=(Tree const &) = delete;

    fs::path const &get_path() const { return m_path; }
    CXTString<wchar_t> get_name() const { return m_path.wstring().c_str(); }

private:
    fs::path m_path;
};

template <class Name> Name make_name(fs::path const &path)
{
    if constexpr (std::is_same_v<Name, fs::path>)
        return path;
    else if constexpr (std::is_same_v<Name, QString>)
        return QString::fromStdString(path.string());
    else
        return path.wstring().c_str();
}

struct KorTools {
    static bool exists(CXTString<wchar_t> const &path) { return fileExists(path); }
    static long count(Tree const &tree) { return fileGetFileCount(tree.get_name(), true); }
    static void remove(Tree const &tree) { fileRemoveDirectory(tree.get_name(), true); }
    static bool copy(fs::path const &from, fs::path const &to)
    {
        return fileCopy(from.wstring().c_str(), to.wstring().c_str());
    }
};

struct Guarded {
    static bool exists(CXTString<wchar_t> const &path)
    {
        unsigned int timeout = 0x80000000 + 5000;
        return fileExists(path, &timeout);
    }
};

struct Std {
    static bool exists(fs::path const &path) { return fs::exists(path); }
    static long count(Tree const &tree)
    {
        long count = 0;
        for (auto const &entry : fs::recursive_directory_iterator(tree.get_path()))
            count += !entry.is_directory();
        return count;
    }
    static void remove(Tree const &tree) { fs::remove_all(tree.get_path()); }
    static bool copy(fs::path const &from, fs::path const &to)
    {
        return fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    }
};

struct Qt {
    static bool exists(QString const &path) { return QFileInfo::exists(path); }
    static long count(Tree const &tree)
    {
        long count = 0;
        QDirIterator entries(QString::fromStdString(tree.get_path().string()),
            QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        for (; entries.hasNext(); entries.next())
            ++count;
        return count;
    }
    static void remove(Tree const &tree)
    {
        QDir(QString::fromStdString(tree.get_path().string())).removeRecursively();
    }
};

template <class Library, class Name> void exists(benchmark::State &state)
{
    Tree const tree(1);
    Name const name = make_name<Name>(tree.get_path() / "0/0/file0");
    for (auto _ : state) {
        if (!Library::exists(name))
            state.SkipWithError("not there");
    }
}
BENCHMARK(exists<KorTools, CXTString<wchar_t>>)->Name("BM_Exists_KorTools");
BENCHMARK(exists<Std, fs::path>)->Name("BM_Exists_Std");
BENCHMARK(exists<Qt, QString>)->Name("BM_Exists_Qt");
BENCHMARK(exists<Guarded, CXTString<wchar_t>>)->Name("BM_ExistsGuarded_KorTools");

template <class Library> void count(benchmark::State &state)
{
    Tree const tree(state.range(0));
    for (auto _ : state) {
        if (Library::count(tree) != state.range(0))
            state.SkipWithError("wrong count");
    }
}
BENCHMARK(count<KorTools>)->Name("BM_Count_KorTools")->Arg(100)->Arg(10000);
BENCHMARK(count<Std>)->Name("BM_Count_Std")->Arg(100)->Arg(10000);
BENCHMARK(count<Qt>)->Name("BM_Count_Qt")->Arg(100)->Arg(10000);

template <class Library> void remove(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        Tree const tree(state.range(0));
        state.ResumeTiming();
        Library::remove(tree);
        if (fs::exists(tree.get_path()))
            state.SkipWithError("still there");
    }
}
BENCHMARK(remove<KorTools>)->Name("BM_Remove_KorTools")->Arg(100)->Iterations(20);
BENCHMARK(remove<Std>)->Name("BM_Remove_Std")->Arg(100)->Iterations(20);
BENCHMARK(remove<Qt>)->Name("BM_Remove_Qt")->Arg(100)->Iterations(20);

// Ours replaces the target when the copy is complete; the peer writes into it.
template <class Library> void copy(benchmark::State &state)
{
    Tree const tree(1);
    fs::path const from = tree.get_path() / "from";
    std::ofstream(from) << std::string(static_cast<std::size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        if (!Library::copy(from, tree.get_path() / "to"))
            state.SkipWithError("not copied");
    }
}
BENCHMARK(copy<KorTools>)->Name("BM_Copy_KorTools")->Arg(1000)->Arg(10000000);
BENCHMARK(copy<Std>)->Name("BM_Copy_Std")->Arg(1000)->Arg(10000000);

} // namespace

BENCHMARK_MAIN();
