// SPDX-License-Identifier: MIT
// Files of leaves, {"<full name>": {"type": "...", "value": "..."}, ...}: what `export` writes and `import`
// and `diff` read.
#ifndef CPP2C_CONTEXTCTL_LEAVES_LEAF_FILE_H
#define CPP2C_CONTEXTCTL_LEAVES_LEAF_FILE_H

#include <string>
#include <vector>

#include "contextctl/leaves/leaf.h"

namespace contextctl {

std::string writeTree(const std::vector<Leaf>& leaves);

// `source` names the text in error messages. Throws Failure for a text of another form.
std::vector<Leaf> readTree(const std::string& text, const std::string& source);

// Reads the file, "-" being standard input.
std::vector<Leaf> readTreeFile(const std::string& path);

}  // namespace contextctl

#endif
