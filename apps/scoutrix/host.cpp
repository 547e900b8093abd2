// SPDX-License-Identifier: MIT
#include "apps/scoutrix/host.h"

#include "apps/common/command_line.h"
#include "apps/common/console.h"
#include "apps/common/exit_codes.h"
#include "apps/common/paths.h"
#include "apps/scoutrix/commands.h"
#include "apps/scoutrix/host_log.h"
#include "apps/scoutrix/plugin_table.h"
#include "apps/scoutrix/prefs.h"
#include "apps/scoutrix/type_table.h"
#include "apps/scoutrix/view.h"
#include "kortools/archive/exception.h"

#include <CLI/CLI.hpp>
#include <functional>

namespace scoutrix {
namespace {

using kor_apps::from_utf8;
using enum kor_apps::ExitCode;

// The commands with their arguments, and what to do for each.
class CommandLine {
public:
    CommandLine()
    {
        m_app.require_subcommand(1);
        m_app.allow_windows_style_options(false); // /a/b is a path
        m_app.fallthrough();                      // the host's own options may follow the command
        kor_apps::add_program_facts(m_app, { exits, examples });
        m_app.add_flag("-j,--json", m_json, "Print results as JSON");
        m_app.add_option("--settings", m_settings, "The settings to use, in place of your own")
            ->type_name("FILE");
        m_app.add_option("--plugins", m_plugins, "The folder of plug-ins, in place of the host's")
            ->type_name("FOLDER");
        m_app.add_option("--log", m_log, "The log to go on with, in place of your own")
            ->type_name("FILE");
        AddTypes();
        AddPlugins();
        AddOpen();
        AddImport();
        AddList();
        AddSearch();
        AddNodes();
        AddPrefs();
        AddView();
    }

    int Run(std::vector<std::string> const &arguments)
    {
        m_arguments = arguments;
        try {
            std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
            reversed.pop_back(); // the program's name; the parser takes the rest from the back
            m_app.parse(reversed);
        } catch (CLI::ParseError const &error) {
            return m_app.exit(error) == 0 ? exit_done : exit_usage;
        }
        HostLog const log(choose(m_log, {}));
        log_line(Describe(arguments));
        int const result = RunCommand();
        Text end;
        end.Format(L"exit code %d", result);
        log_line(end);
        return result;
    }

private:
    using Command = std::function<int(Session &)>;

    static Text Describe(std::vector<std::string> const &arguments)
    {
        Text line = L"command:";
        for (std::string const &argument : arguments)
            line += L" \"" + from_utf8(argument) + L"\"";
        return line;
    }

    // A path as it was given, or the default.
    static Text choose(std::string const &given, Text const &path)
    {
        return given.empty() ? path : kor_apps::make_absolute(from_utf8(given));
    }

    int RunCommand()
    {
        try {
            Session session(SettingsFile(choose(m_settings, SettingsFile::GetDefaultPath())),
                choose(m_plugins, find_plugin_folder()));
            session.json = m_json;
            return m_command(session);
        } catch (CXException *exception) {
            report_error(exception->GetErrorMessage());
            exception->Delete();
        } catch (std::exception const &error) {
            report_error(from_utf8(error.what()));
        }
        return m_failure;
    }

    CLI::App &AddCommand(char const *name, char const *description, Command command)
    {
        return AddCommand(m_app, name, description, std::move(command));
    }

    CLI::App &AddCommand(
        CLI::App &parent, char const *name, char const *description, Command command)
    {
        CLI::App *const app = parent.add_subcommand(name, description);
        app->callback([this, app, command = std::move(command)] {
            if (app->get_subcommands().empty()) // else the one below has said what to do
                m_command = command;
        });
        return *app;
    }

    void AddTypes()
    {
        CLI::App &types
            = AddCommand("types", "Print the file types that are known", [this](Session &session) {
                  session.LoadPlugins();
                  m_types.json = session.json;
                  return list_types(m_types);
              });
        types.add_option("KIND", m_types.kinds, "Only these kinds")
            ->check(CLI::IsMember(get_kind_names()));
        types.add_flag("-l,--load", m_types.loaded, "Only what can be loaded");
        types.add_flag("-s,--save", m_types.saved, "Only what can be saved");
    }

    void AddPlugins()
    {
        AddCommand("plugins", "Print what came of each library of the plug-ins folder",
            [](Session &session) {
                session.LoadPlugins();
                return list_plugins(session.plugin_folder, session.json);
            });
    }

    void AddOpen()
    {
        CLI::App &open
            = AddCommand("open", "Load files and print what they are", [this](Session &session) {
                  return open_files(
                      session, m_import.files, m_flag ? OpenStyle::Table : OpenStyle::Facts);
              });
        open.add_option("FILE", m_import.files, "Files of a type that can be loaded")->required();
        open.add_flag("-t,--table", m_flag, "Print a line for each file, with the time it took");
    }

    void AddImport()
    {
        CLI::App &import
            = AddCommand("import", "Read files and write a scene", [this](Session &session) {
                  return import_files(session, m_import, from_utf8(m_scene));
              });
        import.add_option("FILE", m_import.files, "Files of a type that can be loaded")->required();
        import.add_option("-o,--output", m_scene, "The scene to write")
            ->type_name("SCENE")
            ->required();
        import.add_flag("-a,--append", m_import.append,
            "Add to the scene that is there; files that it has already are read again");
    }

    void AddList()
    {
        CLI::App &list = AddCommand("list", "Print what a scene holds", [this](Session &session) {
            m_list.sort = m_sort.value_or(session.settings.sort);
            m_list.depth = m_depth.value_or(session.settings.depth);
            return list_scene(session, from_utf8(m_scene), m_list);
        });
        list.add_option("SCENE", m_scene, "A scene that import wrote (else the latest one)");
        list.add_option("-d,--depth", m_depth, "How many levels of the tree");
        auto const sort = [this](std::string const &name) { m_sort = find_sort_key(name); };
        list.add_option_function<std::string>("-s,--sort", sort, "How the nodes are sorted")
            ->check(CLI::IsMember(get_sort_names()));
        list.add_flag("-p,--properties", m_list.properties, "Print every property");
    }

    void AddSearch()
    {
        CLI::App &search = AddCommand(
            "search", "Print the paths of nodes whose names match", [this](Session &session) {
                m_failure = exit_usage; // 1 tells that nothing was found
                return search_scene(session, from_utf8(m_scene), from_utf8(m_key), m_search);
            });
        search.add_option("EXPRESSION", m_key, expression_help)->required();
        search.add_option("SCENE", m_scene, "A scene that import wrote (else the latest one)");
        search.add_flag("-c,--case", m_search.case_sensitive, "Tell upper from lower case");
    }

    void AddNodes()
    {
        CLI::App &remove
            = AddCommand("remove", "Remove nodes and what is below them", [this](Session &session) {
                  return remove_nodes(session, from_utf8(m_scene), m_nodes);
              });
        AddScene(remove);
        remove.add_option("NODE", m_nodes, node_help)->required();
        CLI::App &get = AddCommand(
            "get", "Print a property of a node, or all", [this](Session &session) {
                return get_value(session, from_utf8(m_scene), from_utf8(m_node), from_utf8(m_key));
            });
        AddScene(get);
        get.add_option("NODE", m_node, node_help)->required();
        get.add_option("KEY", m_key, "A property; all when left out");
        CLI::App &set = AddCommand(
            "set", "Rename a node, or give it a value of your own", [this](Session &session) {
                return set_value(session, from_utf8(m_scene), from_utf8(m_node), from_utf8(m_key),
                    from_utf8(m_value));
            });
        AddScene(set);
        set.add_option("NODE", m_node, node_help)->required();
        set.add_option("KEY", m_key, "\"name\", or any word that is no other property")->required();
        set.add_option("VALUE", m_value, "The text; \"\" removes the value")->required();
    }

    void AddPrefs()
    {
        CLI::App &prefs = AddCommand("prefs", "Print or change the settings", show_settings);
        prefs.require_subcommand(0, 1);
        AddCommand(prefs, "show", "Print all settings, as without a word", show_settings);
        CLI::App &get = AddCommand(prefs, "get", "Print a setting",
            [this](Session &session) { return get_setting(session, m_key); });
        get.add_option("KEY", m_key, "The setting")->required();
        CLI::App &set = AddCommand(prefs, "set", "Change a setting",
            [this](Session &session) { return set_setting(session, m_key, m_value); });
        set.add_option("KEY", m_key, "The setting")->required();
        set.add_option("VALUE", m_value, "What it becomes")->required();
        CLI::App &remove = AddCommand(prefs, "remove", "Go back to the default of settings",
            [this](Session &session) { return remove_settings(session, m_nodes); });
        remove.add_option("KEY", m_nodes, "The settings")->required();
        AddCommand(prefs, "reset", "Go back to all defaults",
            [](Session &session) { return remove_settings(session, {}); });
        AddCommand(prefs, "where", "Print the path of the file that has them", show_settings_file);
        CLI::App &recent
            = AddCommand("recent", "Print the latest scenes", [this](Session &session) {
                  return m_flag ? clear_recent(session) : list_recent(session);
              });
        recent.add_flag("--clear", m_flag, "Forget them");
    }

    // Everything behind the word is the viewer's, its --help and what looks like our own options.
    void AddView()
    {
        CLI::App &view = AddCommand("view", "Show files in a window, by scoutrix-view",
            [this](Session &) { return view_files(m_viewed); });
        view.set_help_flag();
        view.fallthrough(false);
        view.prefix_command();
        view.preparse_callback([this](std::size_t left) {
            m_viewed.assign(
                m_arguments.end() - static_cast<std::ptrdiff_t>(left), m_arguments.end());
        });
        view.add_option("FILE", m_nodes, "Files, and options of scoutrix-view");
    }

    void AddScene(CLI::App &command)
    {
        command.add_option("SCENE", m_scene, "A scene that import wrote")->required();
    }

    static constexpr kor_apps::ExitMeaning exits[] = { { exit_done, "done" },
        { exit_failed, "failed; search, types: nothing was found; plugins: one was refused" },
        { exit_usage, "wrong usage; search: also a bad expression or scene" },
        { exit_missing, "a file is not there, or its disk does not answer" },
        { exit_unknown, "nothing loads files of that type" },
        { exit_damaged, "the loader of its type cannot read a file" },
        { exit_cancelled, "cancelled by Ctrl+C" } };
    static constexpr kor_apps::Example examples[]
        = { { "scoutrix import -o models.scene *.obj", "reads files and writes a scene" },
              { "scoutrix list --sort size models.scene", "prints what is in it" },
              { "scoutrix --json open a.png b.obj", "tells scripts what files are" },
              { "scoutrix COMMAND --help", "tells what a command takes" } };
    static constexpr char const *expression_help
        = "What the name has: words with * and ?, joined by & (and), ^ (or), ! (not), ( )";
    static constexpr char const *node_help = "The number of a node in the list, or its name";

    CLI::App m_app { "Opens 3D and image files, and keeps what is in them in scenes.", "scoutrix" };
    Command m_command;
    std::vector<std::string> m_arguments; // as they were given
    std::vector<std::string> m_viewed;    // those for the viewer
    bool m_json = false;
    std::string m_settings;
    std::string m_plugins;
    std::string m_log;
    std::string m_scene;
    ImportOptions m_import;
    TypeFilter m_types;
    SearchOptions m_search;
    ListOptions m_list;
    std::optional<SortKey> m_sort; // what the settings say when not given
    std::optional<int> m_depth;
    std::vector<std::string> m_nodes;
    std::string m_node;
    std::string m_key;
    std::string m_value;
    bool m_flag = false;         // --clear
    int m_failure = exit_failed; // the exit code of what throws
};

} // namespace

int run_host(std::vector<std::string> const &arguments)
{
    return CommandLine().Run(arguments);
}

} // namespace scoutrix
