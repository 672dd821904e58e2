# SPDX-License-Identifier: MIT
# Completes the commands, options and leaf names of contextctl in bash.

# The word of the command line that names the command, and for "event" the one behind it.
_contextctl_command() {
  local i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --control | --timeout) ((i++)) ;;
      -*) ;;
      event) printf 'event'; [[ $((i + 1)) -lt $COMP_CWORD ]] && printf ' %s' "${COMP_WORDS[i + 1]}"; return ;;
      *) printf '%s' "${COMP_WORDS[i]}"; return ;;
    esac
  done
}

_contextctl_options() {
  case $1 in
    set) printf -- '--create' ;;
    list) printf -- '--names' ;;
    watch | log | 'event follow') printf -- '--count' ;;
    stats) printf -- '--trace' ;;
    top) printf -- '--interval --count' ;;
    inspect) printf -- '--against --library-path --sysroot --kind --live' ;;
  esac
  printf -- ' --control --timeout --json --reveal --help'
  [[ -z $1 ]] && printf -- ' --version'
}

# The names come from a running context: none of them is ever expanded by the shell.
_contextctl_leaves() {
  local i name control=()
  for ((i = 1; i < COMP_CWORD - 1; i++)); do
    [[ ${COMP_WORDS[i]} == --control ]] && control=(--control "${COMP_WORDS[i + 1]}")
  done
  while IFS= read -r name; do
    [[ $name == "$1"* ]] && COMPREPLY+=("$(printf '%q' "$name")")
  done < <("${COMP_WORDS[0]}" "${control[@]}" --timeout 1 list --names -- "$1" 2>/dev/null)
}

_contextctl_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_contextctl() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command
  command=$(_contextctl_command)
  COMPREPLY=()
  case $before in
    --kind) mapfile -t COMPREPLY < <(compgen -W 'context module' -- "$word"); return ;;
    --control | --trace | --against | --sysroot | --library-path) _contextctl_files "$word"; return ;;
    --timeout | --interval | --count) return ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_contextctl_options "$command")" -- "$word")
    return
  fi
  case $command in
    '')
      mapfile -t COMPREPLY < <(compgen -W \
        'get set list tree instances add del attr watch event log save stop modules registrations stats top
          export import diff inspect' -- "$word") ;;
    event) mapfile -t COMPREPLY < <(compgen -W 'send follow' -- "$word") ;;
    get | list | tree | watch) _contextctl_leaves "$word" ;;
    set) [[ $before == set ]] && _contextctl_leaves "$word" ;;
    export) if [[ $before == export ]]; then _contextctl_leaves "$word"; else _contextctl_files "$word"; fi ;;
    import | diff | inspect) _contextctl_files "$word" ;;
  esac
  return 0
}

complete -F _contextctl contextctl
