# SPDX-License-Identifier: MIT
# Made by scripts/update-manuals.
complete -c scoutrix -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -l version -d 'Print the version and exit'
complete -c scoutrix -s j -l json -d 'Print results as JSON'
complete -c scoutrix -l settings -r -F -d 'The settings to use, in place of your own'
complete -c scoutrix -l plugins -x -a '(__fish_complete_directories)' -d 'The folder of plug-ins, in place of the host\'s'
complete -c scoutrix -l log -r -F -d 'The log to go on with, in place of your own'
complete -c scoutrix -n '__fish_use_subcommand' -f -a types -d 'Print the file types that are known'
complete -c scoutrix -n '__fish_use_subcommand' -f -a plugins -d 'Print what came of each library of the plug-ins folder'
complete -c scoutrix -n '__fish_use_subcommand' -f -a open -d 'Load files and print what they are'
complete -c scoutrix -n '__fish_use_subcommand' -f -a import -d 'Read files and write a scene'
complete -c scoutrix -n '__fish_use_subcommand' -f -a list -d 'Print what a scene holds'
complete -c scoutrix -n '__fish_use_subcommand' -f -a search -d 'Print the paths of nodes whose names match'
complete -c scoutrix -n '__fish_use_subcommand' -f -a remove -d 'Remove nodes and what is below them'
complete -c scoutrix -n '__fish_use_subcommand' -f -a get -d 'Print a property of a node, or all'
complete -c scoutrix -n '__fish_use_subcommand' -f -a set -d 'Rename a node, or give it a value of your own'
complete -c scoutrix -n '__fish_use_subcommand' -f -a prefs -d 'Print or change the settings'
complete -c scoutrix -n '__fish_use_subcommand' -f -a recent -d 'Print the latest scenes'
complete -c scoutrix -n '__fish_use_subcommand' -f -a view -d 'Show files in a window, by scoutrix-view'
complete -c scoutrix -n '__fish_seen_subcommand_from types' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from types' -s l -l load -d 'Only what can be loaded'
complete -c scoutrix -n '__fish_seen_subcommand_from types' -s s -l save -d 'Only what can be saved'
complete -c scoutrix -n '__fish_seen_subcommand_from types' -x -a 'archive web video audio 3d bitmap'
complete -c scoutrix -n '__fish_seen_subcommand_from plugins' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from plugins' -f
complete -c scoutrix -n '__fish_seen_subcommand_from open' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from open' -s t -l table -d 'Print a line for each file, with the time it took'
complete -c scoutrix -n '__fish_seen_subcommand_from import' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from import' -s o -l output -r -F -d 'The scene to write'
complete -c scoutrix -n '__fish_seen_subcommand_from import' -s a -l append -d 'Add to the scene that is there; files that it has already are read again'
complete -c scoutrix -n '__fish_seen_subcommand_from list' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from list' -s d -l depth -x -d 'How many levels of the tree'
complete -c scoutrix -n '__fish_seen_subcommand_from list' -s s -l sort -x -a 'none name size modified kind' -d 'How the nodes are sorted'
complete -c scoutrix -n '__fish_seen_subcommand_from list' -s p -l properties -d 'Print every property'
complete -c scoutrix -n '__fish_seen_subcommand_from search' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from search' -s c -l case -d 'Tell upper from lower case'
complete -c scoutrix -n '__fish_seen_subcommand_from search' -f
complete -c scoutrix -n '__fish_seen_subcommand_from remove' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from get' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from set' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a show -d 'Print all settings, as without a word'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a get -d 'Print a setting'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a set -d 'Change a setting'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a remove -d 'Go back to the default of settings'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a reset -d 'Go back to all defaults'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f -a where -d 'Print the path of the file that has them'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and not __fish_seen_subcommand_from show get set remove reset where' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from show' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from show' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from get' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from get' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from set' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from set' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from remove' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from remove' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from reset' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from reset' -f
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from where' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from prefs; and __fish_seen_subcommand_from where' -f
complete -c scoutrix -n '__fish_seen_subcommand_from recent' -s h -l help -d 'Print this help message and exit'
complete -c scoutrix -n '__fish_seen_subcommand_from recent' -l clear -d 'Forget them'
complete -c scoutrix -n '__fish_seen_subcommand_from recent' -f
