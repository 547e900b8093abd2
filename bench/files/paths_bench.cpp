// SPDX-License-Identifier: MIT
// Path functions beside std::filesystem::path and Qt, wildcards beside fnmatch() and a
// QRegularExpression made of the pattern in advance. Each library has the paths in its own form:
// drives and '\' in wide text, a path object, a QString. Rows that end with "disk" also ask whether
// the path is a directory, which the functions of that name do.
#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/relative_path.h"
#include "kortools/files/wildcards.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <benchmark/benchmark.h>
#include <fnmatch.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t path_count = 64;

// "/home/ann/scenes/level3/box12.kor" and the like: no such files, two to nine folders deep.
std::string make_path(std::size_t index)
{
    std::string path = "/home/ann/scenes";
    for (std::size_t level = 0; level < index % 8; ++level)
        path += "/level " + std::to_string(level);
    return path + "/box" + std::to_string(index) + ".kor";
}

// The same with detours.
std::string make_detour(std::size_t index)
{
    std::string path = make_path(index);
    path.insert(path.rfind('/'), "/./aside/..");
    return path;
}

struct KorTools {
    using Path = CXTString<wchar_t>;
    static Path make(std::string const &native)
    {
        Path path = "C:" + native;
        fileConvertSlash(path);
        return path;
    }
    static std::size_t name_disk(Path const &path) { return length(fileStripPath(path)); }
    static std::size_t directory_disk(Path const &path) { return length(fileStripName(path)) - 3; }
    static std::size_t extension(Path const &path) { return length(fileGetExtension(path)); }
    static std::size_t without_extension(Path const &path)
    {
        return length(fileRemoveExtension(path)) - 2;
    }
    static std::size_t parent(Path const &path)
    {
        Path parent = path;
        return fileGetParentDirectory(parent) ? length(parent) - 2 : 0;
    }
    static bool is_relative(Path const &path) { return fileIsPathRelative(path); }
    static std::size_t relative_disk(Path const &path, Path const &base)
    {
        return length(fileMakeRelativePath(base, path));
    }
    static std::size_t absolute(Path const &path, Path const &base)
    {
        return length(fileMakeAbsolutePath(base, path)) - 2;
    }
    static std::size_t shortest(Path const &path)
    {
        Path shortest = path;
        fileMakePathShortest(shortest);
        return length(shortest) - 2;
    }
    static Path make_relative(std::string const &native) { return make(native).Mid(3); }

private:
    static std::size_t length(Path const &path)
    {
        return static_cast<std::size_t>(path.GetLength());
    }
};

struct Std {
    using Path = fs::path;
    static Path make(std::string const &native) { return native; }
    static Path make_relative(std::string const &native) { return native.substr(1); }
    static std::size_t name_disk(Path const &path)
    {
        return is_directory(path) ? 0 : length(path.filename());
    }
    static std::size_t directory_disk(Path const &path)
    {
        return length(is_directory(path) ? path : path.parent_path());
    }
    static std::size_t extension(Path const &path) { return length(path.extension()); }
    static std::size_t without_extension(Path path) { return length(path.replace_extension()); }
    static std::size_t parent(Path const &path) { return length(path.parent_path()); }
    static bool is_relative(Path const &path) { return path.is_relative(); }
    static std::size_t relative_disk(Path const &path, Path const &base)
    {
        return length(is_directory(base) ? path.lexically_relative(base) : path);
    }
    static std::size_t absolute(Path const &path, Path const &base)
    {
        return length((base / path).lexically_normal());
    }
    static std::size_t shortest(Path const &path) { return length(path.lexically_normal()); }

private:
    static bool is_directory(Path const &path)
    {
        std::error_code ignored;
        return fs::is_directory(path, ignored);
    }
    static std::size_t length(Path const &path) { return path.native().size(); }
};

struct QtPaths {
    using Path = QString;
    static Path make(std::string const &native) { return QString::fromStdString(native); }
    static Path make_relative(std::string const &native) { return make(native).mid(1); }
    static std::size_t name_disk(Path const &path)
    {
        QFileInfo const info(path);
        return info.isDir() ? 0 : length(info.fileName());
    }
    static std::size_t directory_disk(Path const &path)
    {
        QFileInfo const info(path);
        return length(info.isDir() ? path : info.path());
    }
    static std::size_t extension(Path const &path) { return length(QFileInfo(path).suffix()) + 1; }
    static std::size_t without_extension(Path const &path)
    {
        QFileInfo const info(path);
        return length(info.path() + u'/' + info.completeBaseName());
    }
    static std::size_t parent(Path const &path) { return length(QFileInfo(path).path()); }
    static bool is_relative(Path const &path) { return QDir::isRelativePath(path); }
    static std::size_t relative_disk(Path const &path, Path const &base)
    {
        QDir const directory(base);
        return length(directory.exists() ? directory.relativeFilePath(path) : path);
    }
    static std::size_t absolute(Path const &path, Path const &base)
    {
        return length(QDir::cleanPath(QDir(base).absoluteFilePath(path)));
    }
    static std::size_t shortest(Path const &path) { return length(QDir::cleanPath(path)); }

private:
    static std::size_t length(Path const &path) { return static_cast<std::size_t>(path.size()); }
};

// Runs an operation on one path after the other; the result is compared with that of text.
template <class Make, class Run, class Expect>
void measure(benchmark::State &state, Make make, Run run, Expect expect)
{
    std::vector<decltype(make(std::size_t()))> paths;
    std::vector<std::size_t> expected;
    for (std::size_t i = 0; i < path_count; ++i) {
        paths.push_back(make(i));
        expected.push_back(expect(i));
    }
    std::size_t i = 0;
    bool right = true;
    for (auto _ : state) {
        right &= run(paths[i]) == expected[i];
        i = (i + 1) % path_count;
    }
    if (!right)
        state.SkipWithError("wrong result");
}

template <class L> void add_rows(std::string const &library)
{
    using Path = typename L::Path;
    auto const add = [&](char const *row, auto make, auto run, auto expect) {
        benchmark::RegisterBenchmark((std::string("paths/") + row + '/' + library).c_str(),
            [=](benchmark::State &state) { measure(state, make, run, expect); });
    };
    auto const make = [](std::size_t i) { return L::make(make_path(i)); };
    auto const slash = [](std::size_t i) { return make_path(i).rfind('/'); };
    auto const name
        = [](std::size_t i) { return make_path(i).size() - make_path(i).rfind('/') - 1; };
    auto const size = [](std::size_t i) { return make_path(i).size(); };
    auto const bare = [](std::size_t i) { return make_path(i).size() - 4; };
    auto const four = [](std::size_t) { return std::size_t(4); };
    auto const base_size = std::string("/").size();
    static Path const root = L::make("/home");
    add("name_disk", make, L::name_disk, name);
    add("directory_disk", make, L::directory_disk, slash);
    add("extension", make, L::extension, four);
    add("without_extension", make, L::without_extension, bare);
    add("parent", make, L::parent, slash);
    add(
        "is_relative", make, [](Path const &p) { return std::size_t(L::is_relative(p)); },
        [](std::size_t) { return std::size_t(0); });
    add(
        "relative_disk", make, [](Path const &p) { return L::relative_disk(p, root); },
        [=](std::size_t i) { return size(i) - 5 - base_size; });
    add(
        "absolute", [](std::size_t i) { return L::make_relative(make_detour(i)); },
        [](Path const &p) { return L::absolute(p, root); },
        [=](std::size_t i) { return size(i) + 5; });
    add(
        "shortest", [](std::size_t i) { return L::make(make_detour(i)); }, L::shortest, size);
}

struct Match {
    char const *row;
    std::string name;
    char const *pattern;
    bool matches;
};

std::vector<Match> const &get_matches()
{
    static std::vector<Match> const matches = {
        { "extension", "holiday photo 0123.jpg", "*.jpg", true },
        { "extension_miss", "holiday photo 0123.jpeg", "*.jpg", false },
        { "prefix", "holiday photo 0123.jpg", "holiday*", true },
        { "parts", "holiday photo 0123.jpg", "h*ph?to*??3.*", true },
        { "all", "holiday photo 0123.jpg", "*", true },
        { "exact", "holiday photo 0123.jpg", "holiday photo 0123.jpg", true },
        { "long", std::string(1000, 'x') + "needle" + std::string(1000, 'y'), "*n??dle*", true },
        { "hostile", std::string(48, 'a'), "*a*a*a*a*b", false },
        { "hostile_long", std::string(2000, 'a'), "*aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab*", false },
    };
    return matches;
}

template <class Run> void add_match(Match const &match, char const *library, Run run)
{
    std::string const row = std::string("wildcards/") + match.row + '/' + library;
    benchmark::RegisterBenchmark(row.c_str(), [=, &match](benchmark::State &state) {
        bool right = true;
        for (auto _ : state)
            right &= run() == match.matches;
        if (!right)
            state.SkipWithError("wrong result");
    });
}

void add_matches()
{
    for (Match const &match : get_matches()) {
        CXTString<wchar_t> const name(match.name.c_str());
        CXTString<wchar_t> const pattern(match.pattern);
        add_match(match, "KorTools", [=] { return fileMatchWilcards(name, pattern, true); });
        add_match(match, "fnmatch",
            [&match] { return fnmatch(match.pattern, match.name.c_str(), FNM_NOESCAPE) == 0; });
        QRegularExpression const expression(
            QRegularExpression::wildcardToRegularExpression(QString(match.pattern)));
        QString const text = QString::fromStdString(match.name);
        add_match(match, "QRegularExpression", [=] { return expression.match(text).hasMatch(); });
    }
}

} // namespace

int main(int argc, char **argv)
{
    add_rows<KorTools>("KorTools");
    add_rows<Std>("std::filesystem::path");
    add_rows<QtPaths>("Qt");
    add_matches();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
