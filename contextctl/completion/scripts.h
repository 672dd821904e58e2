// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMPLETION_SCRIPTS_H
#define CPP2C_CONTEXTCTL_COMPLETION_SCRIPTS_H

#include <string>

namespace contextctl {

// What makes "bash", "zsh" or "fish" complete command lines. The scripts know nothing themselves: they hand
// the words to `contextctl complete`, which prints what may stand in place of the last one, or ends with
// status 1 where the shell is to complete names of files.
std::string completionScript(const std::string& shell);

}  // namespace contextctl

#endif
