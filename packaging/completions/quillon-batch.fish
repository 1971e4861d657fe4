# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of quillon-batch for fish.

function __quillon_batch_controls
    quillon-batch --list-controls 2>/dev/null | while read -d \t name kind value caption
        printf '%s\t%s\n' $name $caption
    end
end

function __quillon_batch_windows
    quillon-batch --list-controls 2>/dev/null | string split -f 1 . | sort -u
end

complete -c quillon-batch -l set -x -a '(__quillon_batch_controls)' -d 'fill a control'
complete -c quillon-batch -l out -x -a '(__fish_complete_directories)' -d 'output folder'
complete -c quillon-batch -l open -x -a '(__quillon_batch_windows)' -d 'open a window'
complete -c quillon-batch -l close -x -a '(__quillon_batch_windows)' -d 'close a window'
complete -c quillon-batch -l click -x -a '(__quillon_batch_controls)' -d 'press a button or choose a menu entry'
complete -c quillon-batch -l answer -x -d 'answer a box or dialog'
complete -c quillon-batch -l print -x -a '(__quillon_batch_controls)' -d 'write what a control holds'
complete -c quillon-batch -l script -r -d 'steps from a file'
complete -c quillon-batch -l jobs -x -d 'share the work among processes'
complete -c quillon-batch -l shard -x -d 'handle one share of all files'
complete -c quillon-batch -l on-existing -x -a 'replace rename skip' -d 'existing files of the names of outputs'
complete -c quillon-batch -l json -d 'every event as a line of JSON'
complete -c quillon-batch -l trace -d 'changes of controls too'
complete -c quillon-batch -l list-controls -d 'list all controls'
complete -c quillon-batch -s h -l help -d 'write a help text'
complete -c quillon-batch -l version -d 'write the version'
