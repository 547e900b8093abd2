// SPDX-License-Identifier: MIT
// kordump: shows what is in a file of the library, and writes such files from JSON.
#include "apps/common/command_line.h"
#include "apps/common/console.h"
#include "apps/kordump/document.h"
#include "apps/kordump/json_report.h"
#include "apps/kordump/restore.h"
#include "kortools/archive/file.h"
#include "kortools/platform/terminal.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

namespace {

using kor_apps::from_utf8;
using enum kor_apps::ExitCode;

constexpr char const *description
    = "Shows archives, custom data, preferences files and trees as text or as JSON, and writes\n"
      "the same bytes back from that JSON. What cannot be understood is shown as bytes.";
constexpr kor_apps::ExitMeaning exits[] = { { exit_done, "done" },
    { exit_failed, "a file cannot be written, or not read to its end" },
    { exit_usage, "wrong usage" }, { exit_missing, "a file is not there, or cannot be opened" },
    { exit_unknown, "what is shown as text is no file of the library" },
    { exit_damaged, "what is shown as text is damaged, or the JSON describes no file" } };
constexpr kor_apps::Example examples[] = { { "kordump a.scene", "shows what is in a file" },
    { "kordump --json a.scene | kordump --from-json -o b.scene", "makes an equal file" },
    { "kordump --as archive --top 'u32 string' a.bin", "tells what a file is" } };

struct Options {
    std::string file;
    std::string output;
    std::string format;
    std::vector<std::string> class_files;
    std::string top;
    bool json = false;
    bool from_json = false;
};

// Ends the program with a code of its own.
class Failure : public std::runtime_error {
public:
    Failure(kor_apps::ExitCode code, std::string const &message)
        : runtime_error(message)
        , m_code(code)
    {
    }

    kor_apps::ExitCode GetCode() const { return m_code; }

private:
    kor_apps::ExitCode m_code;
};

std::string read_file(std::string const &path)
{
    CXFile file(true);
    CXFileException error;
    if (!file.Open(from_utf8(path), CXFile::modeRead | CXFile::shareDenyWrite, &error))
        throw Failure(exit_missing, kor_apps::to_utf8(error.GetErrorMessage()));
    unsigned long long const length = file.GetLength();
    std::string bytes(static_cast<std::size_t>(length), '\0');
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

std::string read_standard_input()
{
    std::string bytes;
    char block[1 << 16];
    while (std::size_t const size = std::fread(block, 1, sizeof block, stdin))
        bytes.append(block, size);
    if (std::ferror(stdin))
        throw std::runtime_error("the standard input cannot be read");
    return bytes;
}

// The file named, or standard output.
class Target {
public:
    explicit Target(std::string const &path)
        : m_named(!path.empty())
    {
        CXFileException error;
        constexpr auto mode = CXFile::modeCreate | CXFile::modeWrite | CXFile::shareExclusive;
        if (m_named && !m_file.Open(from_utf8(path), mode, &error))
            kor_apps::fail(error.GetErrorMessage());
    }

    void Write(std::string_view bytes)
    {
        constexpr std::size_t block = 1U << 20;
        while (m_named && !bytes.empty()) {
            std::string_view const part = bytes.substr(0, block);
            m_file.Write(part.data(), static_cast<unsigned int>(part.size()));
            bytes.remove_prefix(part.size());
        }
        Check(std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
    }

    void Close()
    {
        if (m_named)
            m_file.Close();
        Check(std::fflush(stdout) == 0);
    }

private:
    static void Check(bool written)
    {
        if (!written)
            throw std::runtime_error("the standard output cannot be written");
    }

    CXFile m_file { true };
    bool const m_named;
};

kordump::LayoutTable read_layouts(Options const &options)
{
    kordump::LayoutTable layouts;
    layouts.Parse(kordump::known_layouts);
    for (std::string const &each : options.class_files)
        layouts.Parse(read_file(each));
    return layouts;
}

kordump::Plan make_plan(Options const &options, kordump::ByteSpan bytes)
{
    kordump::Plan plan;
    plan.layouts = read_layouts(options);
    plan.top = kordump::LayoutTable::ParseFields(options.top);
    if (!options.format.empty())
        plan.format = *kordump::find_format(options.format);
    else if (!plan.top.empty())
        plan.format = kordump::Format::Archive;
    else
        plan.format = kordump::detect_format(bytes);
    return plan;
}

// Below the lines of a report: what stopped it, and the bytes behind. The exit code.
int print_end(kordump::Reading const &reading, kordump::ByteSpan bytes, Options const &options,
    kordump::Output const &output)
{
    kordump::ByteSpan const rest = bytes.subspan(reading.end);
    constexpr std::size_t shown = 256; // bytes
    if (!reading.unknown_class.empty())
        output("the class " + reading.unknown_class
            + " is not known; its objects cannot be told apart\n");
    if (!rest.empty()) {
        output(std::to_string(rest.size()) + " bytes from offset " + std::to_string(reading.end)
            + " on" + (rest.size() > shown ? ", the first of them:\n" : ":\n"));
        kordump::print_hex(rest.first(std::min(rest.size(), shown)), reading.end, output);
    }
    if (reading.problem.empty())
        return exit_done;
    kor_apps::print_error("kordump", from_utf8(options.file + ": " + reading.problem));
    bool const recognised = !options.format.empty() || !options.top.empty()
        || kordump::detect_format(bytes) != kordump::Format::Raw;
    return recognised ? exit_damaged : exit_unknown;
}

int dump(Options const &options)
{
    std::string const content = read_file(options.file);
    kordump::ByteSpan const bytes { reinterpret_cast<unsigned char const *>(content.data()),
        content.size() };
    kordump::Plan const plan = make_plan(options, bytes);
    Target target(options.output);
    kordump::Output const output = [&](std::string_view text) { target.Write(text); };
    int code = exit_done;
    if (options.json) {
        kordump::JsonReport report(output);
        report_file(bytes, plan, report);
        report.Finish();
    } else {
        kordump::TextReport report(output);
        code = print_end(report_file(bytes, plan, report), bytes, options, output);
    }
    target.Close();
    return code;
}

int restore(Options const &options)
{
    bool const piped = options.file.empty() || options.file == "-";
    std::string const json = piped ? read_standard_input() : read_file(options.file);
    kordump::LayoutTable const layouts = read_layouts(options);
    std::string bytes;
    try {
        bytes = kordump::restore_file(json, layouts);
    } catch (std::exception const &error) { // most are of the JSON library
        throw Failure(exit_damaged, error.what());
    }
    Target target(options.output);
    target.Write(bytes);
    target.Close();
    return exit_done;
}

void declare(CLI::App &app, Options &options)
{
    kor_apps::add_program_facts(app, { exits, examples });
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.add_option("FILE", options.file, "The file; JSON with --from-json, then - is stdin");
    auto *const json = app.add_flag("-j,--json", options.json, "Shows it as JSON");
    app.add_flag("--from-json", options.from_json, "Writes the file that JSON describes")
        ->excludes(json);
    app.add_option("-o,--output", options.output, "Where to write (else to standard output)")
        ->type_name("FILE");
    app.add_option("--as", options.format, "What the file is (else it is recognised)")
        ->check(CLI::IsMember({ "archive", "custom-data", "preferences", "tree", "raw" }));
    app.add_option("-c,--classes", options.class_files,
           "A text that describes further classes; may be repeated")
        ->allow_extra_args(false)
        ->type_name("FILE");
    app.add_option("-t,--top", options.top,
           "What lies in an archive outside objects, as \"u32 string object[]\" (else objects)")
        ->type_name("TYPES");
}

int run(std::vector<std::string> const &arguments)
{
    CLI::App app(description, "kordump");
    Options options;
    declare(app, options);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        reversed.pop_back(); // the program's name; the parser takes the rest from the back
        app.parse(reversed);
        if (options.file.empty() && !options.from_json)
            throw CLI::RequiredError("FILE");
    } catch (CLI::ParseError const &error) {
        return app.exit(error) == 0 ? exit_done : exit_usage;
    }
    return options.from_json ? restore(options) : dump(options);
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
    } catch (Failure const &failure) {
        kor_apps::print_error("kordump", from_utf8(failure.what()));
        return failure.GetCode();
    } catch (std::exception const &error) {
        kor_apps::print_error("kordump", from_utf8(error.what()));
    }
    return exit_failed;
}
