// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAVES_COMPARISON_H
#define CPP2C_CONTEXTCTL_LEAVES_COMPARISON_H

#include <string>
#include <vector>

#include "contextctl/leaves/leaf.h"

namespace contextctl {

// A leaf with different values in the context and in the file.
struct Difference {
  std::string name;
  std::string type;
  std::string context;
  std::string file;
};

// How a file of leaves compares with the context. Leaves that are missing from the file are ignored.
struct Comparison {
  std::vector<std::string> conflicts;  // messages: why the file cannot be imported
  std::vector<Difference> differences;
};

Comparison compare(const std::vector<Leaf>& file, const std::vector<Leaf>& context);

}  // namespace contextctl

#endif
