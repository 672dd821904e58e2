// SPDX-License-Identifier: MIT
// Files of leaves, {"<full name>": {"type": "...", "value": "..."}, ...}: `export` writes them, `import` and
// `diff` read them.
#ifndef CPP2C_CONTEXTCTL_LEAVES_LEAF_FILE_H
#define CPP2C_CONTEXTCTL_LEAVES_LEAF_FILE_H

#include <string>
#include <vector>

#include "contextctl/leaves/leaf.h"

namespace contextctl {

// Sorted by name.
std::string formatLeaves(const std::vector<Leaf>& leaves);

// In the order of the text; of equal keys, the last value. `source` is the name of the text in error
// messages. Throws Failure if the text is invalid or exceeds the limits of JSON from elsewhere.
std::vector<Leaf> parseLeaves(const std::string& text, const std::string& source);

// Reads the file; "-" is standard input.
std::vector<Leaf> readLeafFile(const std::string& path);

}  // namespace contextctl

#endif
