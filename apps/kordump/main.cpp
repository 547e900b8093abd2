// SPDX-License-Identifier: MIT
// kordump: prints what is in an archive.
#include "apps/common/console.h"
#include "apps/kordump/printer.h"
#include "kortools/archive/file.h"
#include "kortools/platform/terminal.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

namespace {

using kor_apps::from_utf8;

std::vector<unsigned char> read_file(std::string const &path)
{
    CXFile file(true);
    CXFileException error;
    if (!file.Open(from_utf8(path), CXFile::modeRead | CXFile::shareDenyWrite, &error))
        kor_apps::fail(error.GetErrorMessage());
    unsigned long long const length = file.GetLength();
    std::vector<unsigned char> bytes(static_cast<std::size_t>(length));
    constexpr std::size_t block = 1U << 20;
    std::size_t size = 0;
    kor_apps::ProgressLine progress(from_utf8(path));
    while (size < bytes.size()) {
        auto const wanted = static_cast<unsigned int>(std::min(block, bytes.size() - size));
        unsigned int const read = file.Read(bytes.data() + size, wanted);
        if (read == 0)
            break; // somebody cut the file meanwhile
        size += read;
        progress.Update(size, length);
    }
    bytes.resize(size);
    return bytes;
}

// Prints the tree and what stopped it; the exit code.
int dump(std::string const &path, kordump::LayoutTable const &layouts, std::string const &top)
{
    std::vector<unsigned char> const bytes = read_file(path);
    kordump::Tree const tree
        = kordump::read_archive(bytes, layouts, kordump::LayoutTable::ParseFields(top));
    kordump::print_tree(tree, stdout);
    std::span<unsigned char const> const rest
        = std::span(bytes).subspan(static_cast<std::size_t>(tree.end));
    constexpr std::size_t shown = 256; // bytes
    if (!tree.unknown_class.empty())
        std::printf("the class %s is not known; its objects cannot be told apart\n",
            tree.unknown_class.c_str());
    if (!rest.empty()) {
        std::printf("%zu bytes from offset %llu on%s\n", rest.size(), tree.end,
            rest.size() > shown ? ", the first of them:" : ":");
        kordump::print_hex(rest.first(std::min(rest.size(), shown)), tree.end, stdout);
    }
    if (tree.problem.empty())
        return 0;
    kor_apps::print_error("kordump", from_utf8(path + ": " + tree.problem));
    return 1;
}

int run(std::vector<std::string> const &arguments)
{
    CLI::App app("Prints an archive as a tree: offset, tag, class, number and value.", "kordump");
    std::string file;
    std::vector<std::string> class_files;
    std::string top;
    app.add_option("FILE", file, "The archive")->required();
    app.add_option("-c,--classes", class_files, "Texts that describe further classes");
    app.add_option("-t,--top", top,
        "What lies in the archive outside objects, as \"u32 string object[]\" (else objects)");
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        reversed.pop_back(); // the program's name; the parser takes the rest from the back
        app.parse(reversed);
    } catch (CLI::ParseError const &error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    kordump::LayoutTable layouts;
    layouts.Parse(kordump::scene_layouts);
    for (std::string const &each : class_files) {
        std::vector<unsigned char> const text = read_file(each);
        layouts.Parse({ reinterpret_cast<char const *>(text.data()), text.size() });
    }
    return dump(file, layouts, top);
}

} // namespace

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    try {
        return run(kortools::platform::get_utf8_arguments(argc, argv));
    } catch (CXException *exception) {
        kor_apps::print_error("kordump", exception->GetErrorMessage());
        exception->Delete();
    } catch (std::exception const &error) {
        kor_apps::print_error("kordump", from_utf8(error.what()));
    }
    return 1;
}
