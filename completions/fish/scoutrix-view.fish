# SPDX-License-Identifier: MIT
# Made by scripts/update-manuals.
complete -c scoutrix-view -s h -l help -d 'Print this help message and exit'
complete -c scoutrix-view -l version -d 'Print the version and exit'
complete -c scoutrix-view -l plugins -x -a '(__fish_complete_directories)' -d 'The folder of plug-ins, in place of the host\'s'
complete -c scoutrix-view -s z -l zoom -x -d 'Per cent, in place of the whole picture'
complete -c scoutrix-view -s s -l select -x -d 'Frame a part: left, top, width and height'
complete -c scoutrix-view -s l -l lock -d 'Keep the proportions of the frame'
complete -c scoutrix-view -l size -x -d 'Width and height of the view, in pixels'
complete -c scoutrix-view -l screenshot -r -F -d 'Show the first file, write the window to this picture, and end'
