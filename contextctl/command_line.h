// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMMAND_LINE_H
#define CPP2C_CONTEXTCTL_COMMAND_LINE_H

#include "contextctl/system/failure.h"

namespace contextctl {

// Parses the command line and runs its command. Throws Failure.
ExitStatus runCommandLine(int argc, const char* const* argv);

}  // namespace contextctl

#endif
