# SPDX-License-Identifier: MIT
# Made by scripts/update-manuals.
complete -c kordump -s h -l help -d 'Print this help message and exit'
complete -c kordump -l version -d 'Print the version and exit'
complete -c kordump -s j -l json -d 'Shows it as JSON'
complete -c kordump -l from-json -d 'Writes the file that JSON describes'
complete -c kordump -s o -l output -r -F -d 'Where to write (else to standard output)'
complete -c kordump -l as -x -a 'archive custom-data preferences tree raw' -d 'What the file is (else it is recognised)'
complete -c kordump -s c -l classes -r -F -d 'A text that describes further classes; may be repeated'
complete -c kordump -s t -l top -x -d 'What lies in an archive outside objects, as "u32 string object[]" (else objects)'
