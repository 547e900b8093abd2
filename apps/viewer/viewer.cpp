// SPDX-License-Identifier: MIT
#include "apps/viewer/viewer.h"

#include "apps/common/command_line.h"
#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "apps/scoutrix/known_types.h"
#include "apps/viewer/loader.h"
#include "apps/viewer/view_window.h"
#include "kortools/app/application.h"
#include "kortools/archive/exception.h"

#include <CLI/CLI.hpp>

namespace viewer {
namespace {

using kor_apps::from_utf8;

struct Options {
    std::vector<std::string> files;
    std::string plugins;
    std::string screenshot;
    std::vector<int> size { 800, 600 };
    std::vector<int> selection; // left, top, width, height
    float zoom = 0;             // percent; 0: fit
    bool lock = false;
};

// The files, one of which is shown.
class Viewer {
public:
    Viewer(Options const &options, kortools::ui::BackEnd &back_end)
        : m_options(options)
        , m_backEnd(back_end)
        , m_types(options.plugins.empty() ? scoutrix::find_plugin_folder()
                                          : kor_apps::make_absolute(from_utf8(options.plugins)))
        , m_window(back_end, [this](int step) { TurnPage(step); })
    {
        m_window.GetFrame().SetViewSize({ options.size[0], options.size[1] });
    }

    int Run()
    {
        m_window.GetFrame().Show(true);
        m_backEnd.PumpMessages(); // the view has its size from now on
        bool const is_shown = ShowFile(0);
        if (m_options.screenshot.empty())
            m_backEnd.Run();
        else if (is_shown)
            SaveScreenshot();
        return m_code;
    }

private:
    void TurnPage(int step)
    {
        if (m_isLoading) // keys come while the dialog is there
            return;
        auto const count = static_cast<int>(m_options.files.size());
        int const page = (static_cast<int>(m_page) + step + count) % count;
        ShowFile(static_cast<std::size_t>(page));
    }

    bool ShowFile(std::size_t page)
    {
        m_page = page;
        m_isLoading = true;
        Text const path = from_utf8(m_options.files[page]);
        Loaded loaded = load_file(
            path, m_backEnd, &m_window.GetView(), { m_options.size[0], m_options.size[1] });
        m_isLoading = false;
        if (!loaded.error.IsEmpty()) {
            Report(loaded);
            return false;
        }
        m_window.ShowPicture(std::move(loaded.picture), path + L" - scoutrix");
        Arrange();
        return true;
    }

    void Arrange()
    {
        if (m_options.zoom > 0)
            m_window.SetZoom(m_options.zoom / 100);
        std::vector<int> const &frame = m_options.selection;
        if (!frame.empty()) {
            m_window.Select(CRect(CPoint(frame[0], frame[1]), CSize(frame[2], frame[3])));
        }
        if (m_options.lock)
            m_window.LockProportions(true);
    }

    void Report(Loaded const &loaded)
    {
        kor_apps::print_error("scoutrix-view", loaded.error);
        m_code = m_code == 0 ? loaded.code : m_code;
        constexpr unsigned int warning = 0x30;
        if (m_options.screenshot.empty())
            m_backEnd.ShowMessageBox(loaded.error, L"scoutrix", warning);
    }

    // Painted by then, as the user would see it.
    void SaveScreenshot()
    {
        m_backEnd.PumpMessages();
        kortools::ui::Picture const picture = m_window.GetFrame().CaptureFrame();
        CIoBitmap bitmap;
        bitmap.m_format.m_width = static_cast<unsigned int>(picture.size.cx);
        bitmap.m_format.m_height = static_cast<unsigned int>(picture.size.cy);
        bitmap.m_format.m_channels = 3;
        bitmap.m_rows.reserve(picture.pixels.size() * 3);
        for (CRGBColor const &pixel : picture.pixels)
            bitmap.m_rows.insert(bitmap.m_rows.end(), pixel.ValPtr(), pixel.ValPtr() + 3);
        CIoReport report;
        Text const path = kor_apps::make_absolute(from_utf8(m_options.screenshot));
        if (!fileSaveBitmap(path, bitmap, &report)) {
            kor_apps::print_error("scoutrix-view", path + L": " + report.m_error);
            m_code = 1;
        }
    }

    Options const &m_options;
    kortools::ui::BackEnd &m_backEnd;
    scoutrix::KnownTypes m_types;
    ViewWindow m_window;
    std::size_t m_page = 0;
    bool m_isLoading = false;
    int m_code = 0;
};

constexpr kor_apps::ExitMeaning exits[] = { { kor_apps::exit_done, "done" },
    { kor_apps::exit_failed, "failed" }, { kor_apps::exit_usage, "wrong usage" },
    { kor_apps::exit_missing, "a file is not there, or its disk does not answer" },
    { kor_apps::exit_unknown, "nothing loads files of that type" },
    { kor_apps::exit_damaged, "the loader of its type cannot read a file" } };
constexpr kor_apps::Example examples[] = { { "scoutrix-view a.png b.obj", "shows two files" },
    { "scoutrix-view --size 320,240 --screenshot small.png b.obj", "makes a picture of a scene" } };

void add_options(CLI::App &app, Options &options)
{
    kor_apps::add_program_facts(app, { exits, examples });
    app.allow_windows_style_options(false); // /a/b is a path
    app.add_option("FILE", options.files, "Bitmaps and scenes of a type that can be loaded")
        ->required();
    app.add_option("--plugins", options.plugins, "The folder of plug-ins, in place of the host's")
        ->type_name("FOLDER");
    app.add_option("-z,--zoom", options.zoom, "Per cent, in place of the whole picture")
        ->check(CLI::Range(1.0, 3200.0));
    app.add_option("-s,--select", options.selection, "Frame a part: left, top, width and height")
        ->delimiter(',')
        ->expected(4);
    app.add_flag("-l,--lock", options.lock, "Keep the proportions of the frame");
    app.add_option("--size", options.size, "Width and height of the view, in pixels")
        ->delimiter(',')
        ->expected(2)
        ->check(CLI::Range(16, 8192));
    app.add_option("--screenshot", options.screenshot,
           "Show the first file, write the window to this picture, and end")
        ->type_name("FILE");
}

} // namespace

int run_viewer(std::vector<std::string> const &arguments,
    std::function<kortools::ui::BackEnd &()> const &install_back_end)
{
    SetInternalProductName(L"scoutrix"); // for the titles of boxes
    Options options;
    CLI::App app("Shows bitmaps and scenes.", "scoutrix-view");
    add_options(app, options);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        reversed.pop_back(); // the program's name; the parser takes the rest from the back
        app.parse(reversed);
    } catch (CLI::ParseError const &error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    try {
        Viewer viewer(options, install_back_end());
        return viewer.Run();
    } catch (CXException *exception) {
        kor_apps::print_error("scoutrix-view", exception->GetErrorMessage());
        exception->Delete();
    } catch (std::exception const &error) {
        kor_apps::print_error("scoutrix-view", from_utf8(error.what()));
    }
    return 1;
}

} // namespace viewer
