// SPDX-License-Identifier: MIT
#include "contextctl/completion/scripts.h"

namespace contextctl {
namespace {

// Names come from a running context: the shell must not expand them.
constexpr const char* kBash = R"sh(_contextctl() {
  local name names word=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  if names=$("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null); then
    while IFS= read -r name; do
      [[ -n $name ]] && COMPREPLY+=("$(printf '%q' "$name")")
    done <<<"$names"
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _contextctl contextctl
)sh";

// Loaded automatically by its name, or read by "source".
constexpr const char* kZsh = R"sh(#compdef contextctl
_contextctl() {
  local names
  if names=$("${words[1]}" complete -- "${(@Q)words[2,CURRENT]}" 2>/dev/null); then
    compadd -- "${(@f)names}"
  else
    _files
  fi
}
if [[ ${funcstack[1]} == _contextctl ]]; then
  _contextctl "$@"
else
  compdef _contextctl contextctl
fi
)sh";

constexpr const char* kFish = R"sh(function __contextctl_candidates
  set -l words (commandline -opc)
  set -l word (commandline -ct)
  $words[1] complete -- $words[2..-1] "$word" 2>/dev/null
  or __fish_complete_path "$word"
end
complete -c contextctl -f -a '(__contextctl_candidates)'
)sh";

}  // namespace

std::string completionScript(const std::string& shell) {
  if (shell == "bash") return kBash;
  return shell == "zsh" ? kZsh : kFish;
}

}  // namespace contextctl
