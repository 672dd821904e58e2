// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAVES_COMPARISON_H
#define CPP2C_CONTEXTCTL_LEAVES_COMPARISON_H

#include <optional>
#include <string>
#include <vector>

#include "contextctl/leaves/leaf.h"

namespace contextctl {

class Session;

// A leaf whose value in the context is not the file's.
struct Difference {
  std::string name;
  std::string type;
  std::string context;
  std::string file;
};

// How a file of leaves stands to the context. Leaves that the file does not name do not count.
struct Comparison {
  std::vector<std::string> obstacles;  // why the file cannot be imported, a line each
  std::vector<Difference> differences;
};

Comparison compare(const std::vector<Leaf>& file, const std::vector<Leaf>& context);

// With the context's leaves as they are now, passwords included.
Comparison compareWithContext(const Session& session, const std::string& path);

// One value of a difference, as far as it may be shown.
std::optional<std::string> visible(const Session& session, const Difference& difference,
                                   const std::string& value);

}  // namespace contextctl

#endif
