# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of quillon-batch for bash.

_quillon_batch_controls() {
  "${COMP_WORDS[0]}" --list-controls 2>/dev/null | cut -f1
}

# Offers the lines of $1 that begin with the current word; the index of a control is quoted.
_quillon_batch_offer() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
  COMPREPLY=("${COMPREPLY[@]//\(/\\(}")
  COMPREPLY=("${COMPREPLY[@]//)/\\)}")
}

_quillon_batch_paths() {
  mapfile -t COMPREPLY < <(compgen "$1" -- "$cur")
  compopt -o filenames 2>/dev/null
}

_quillon_batch() {
  local IFS=$'\n' cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  case $previous in
    --set)
      _quillon_batch_offer "$(_quillon_batch_controls | sed 's/$/=/')"
      compopt -o nospace 2>/dev/null
      ;;
    --click | --print)
      _quillon_batch_offer "$(_quillon_batch_controls)"
      ;;
    --open | --close)
      _quillon_batch_offer "$(_quillon_batch_controls | cut -d. -f1 | uniq)"
      ;;
    --out)
      _quillon_batch_paths -d
      ;;
    --on-existing)
      _quillon_batch_offer $'replace\nrename\nskip'
      ;;
    --answer | --jobs | --shard) ;;
    *)
      if [[ $previous != --script && $cur == -* ]]; then
        _quillon_batch_offer $'--set\n--out\n--open\n--close\n--click\n--answer\n--print\n--script\n--jobs\n--shard\n--on-existing\n--json\n--trace\n--list-controls\n--help\n--version'
      else
        _quillon_batch_paths -f
      fi
      ;;
  esac
}

complete -F _quillon_batch quillon-batch
