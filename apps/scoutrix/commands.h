// SPDX-License-Identifier: MIT
// The commands of scoutrix on files and scenes. Each returns one of exit_codes.h. They
// throw CXException for what cannot be done. One that changes a scene writes it as a whole or
// leaves it as it was.
#pragma once

#include "apps/scoutrix/known_types.h"
#include "apps/scoutrix/listing.h"
#include "apps/scoutrix/settings.h"

#include <optional>
#include <string>
#include <vector>

namespace scoutrix {

struct ImportOptions {
    std::vector<std::string> files;
    bool append = false; // to the scene that is there
};

// What all commands share.
struct Session {
    Session(SettingsFile const &settings_file, Text plugins)
        : file(settings_file)
        , settings(file.Load())
        , plugin_folder(std::move(plugins))
    {
    }

    // To be called once a scene was read or written.
    void Remember(Text const &scene);

    // To be called before types are asked for. The plug-ins stay as long as the session.
    void LoadPlugins() { types.emplace(plugin_folder); }

    SettingsFile file;
    Settings settings;
    Text plugin_folder;
    bool json = false; // results are printed as JSON
    std::optional<KnownTypes> types;
};

// Loads the files and prints what they are, in full or a line each. The exit code is that of the
// first one that could not be loaded.
enum class OpenStyle { Facts, Table };
int open_files(Session &session, std::vector<std::string> const &files, OpenStyle style);

// Loads the files into a scene, with an exit code as above; none is written when one of them fails.
int import_files(Session &session, ImportOptions const &options, Text const &path);

// The latest of the recent scenes when `path` is empty.
int list_scene(Session &session, Text const &path, ListOptions options);

struct SearchOptions {
    bool case_sensitive = false;
};

// Prints number and path of the nodes whose names match, as CXStringMatch does. The exit code is 1
// when there are none. An empty `path` as above.
int search_scene(
    Session &session, Text const &path, Text const &expression, SearchOptions const &options);

int remove_nodes(Session &session, Text const &path, std::vector<std::string> const &nodes);

// One value of a node or, without a key, all of them.
int get_value(Session &session, Text const &path, Text const &name, Text const &key);

// The node's name or a value of the user's own; an empty one removes it.
int set_value(
    Session &session, Text const &path, Text const &name, Text const &key, Text const &value);

int list_recent(Session &session);
int clear_recent(Session &session);

} // namespace scoutrix
