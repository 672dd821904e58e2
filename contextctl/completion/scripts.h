// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMPLETION_SCRIPTS_H
#define CPP2C_CONTEXTCTL_COMPLETION_SCRIPTS_H

#include <string>

namespace contextctl {

// The completion script of "bash", "zsh" or "fish". The scripts pass the words of the command line to
// `contextctl complete`, which prints the completions of the last word, or exits with status 1 if the shell
// is to complete a file name.
std::string completionScript(const std::string& shell);

}  // namespace contextctl

#endif
