// SPDX-License-Identifier: MIT
// export, import, diff.
#include <algorithm>
#include <iostream>

#include "contextctl/commands/commands.h"
#include "contextctl/leaves/comparison.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/leaves/leaf_file.h"
#include "contextctl/output/table.h"
#include "contextctl/system/files.h"
#include "util/text.h"

namespace contextctl {
namespace {

Value valueOf(const std::optional<std::string>& text) {
  return text ? Value(*text) : Value(nullptr);
}

Members membersOf(const Session& session, const Difference& d) {
  return {{"name", d.name},
          {"type", d.type},
          {"context", valueOf(visible(session, d, d.context))},
          {"file", valueOf(visible(session, d, d.file))}};
}

void printDifferences(const Session& session, const std::vector<Difference>& differences) {
  if (session.json()) {
    std::vector<Members> items;
    items.reserve(differences.size());
    for (const Difference& difference : differences) items.push_back(membersOf(session, difference));
    session.out() << writeList("differences", items) << '\n';
  } else if (!differences.empty()) {
    Table table({"NAME", "CONTEXT", "FILE"});
    for (const Difference& d : differences)
      table.add({d.name, shown(visible(session, d, d.context)), shown(visible(session, d, d.file))});
    table.print(session.out());
  }
}

void printObstacles(const Comparison& comparison) {
  for (const std::string& obstacle : comparison.obstacles)
    std::cerr << "contextctl: " << util::printable(obstacle) << '\n';
}

// The context checks values; it may still refuse one, and what was set before stays.
void apply(const Session& session, const std::vector<Difference>& differences) {
  size_t done = 0;
  for (const Difference& difference : differences) {
    try {
      session.put("/leaf", {{"name", difference.name}, {"value", difference.file}});
      done++;
    } catch (const Failure& failure) {
      throw Failure(failure.status(), difference.name + ": " + failure.what() + "; set before it: " +
                                          std::to_string(done) + " of " + std::to_string(differences.size()));
    }
  }
}

}  // namespace

void exportTree(const Session& session, const std::string& prefix, const std::string& file) {
  std::vector<Leaf> leaves = getLeaves(session, prefix, session.reveal());
  const auto is_left_out = [](const Leaf& leaf) { return leaf.computed || !leaf.value; };
  leaves.erase(std::remove_if(leaves.begin(), leaves.end(), is_left_out), leaves.end());
  if (file.empty()) {
    session.out() << writeTree(leaves);
  } else {
    writeFile(file, writeTree(leaves));
  }
}

ExitStatus importTree(const Session& session, const std::string& file) {
  const Comparison comparison = compareWithContext(session, file);
  printObstacles(comparison);
  if (!comparison.obstacles.empty()) return kExitNo;
  apply(session, comparison.differences);
  printDifferences(session, comparison.differences);
  return kExitOk;
}

ExitStatus diffTree(const Session& session, const std::string& file) {
  const Comparison comparison = compareWithContext(session, file);
  printObstacles(comparison);
  printDifferences(session, comparison.differences);
  return comparison.obstacles.empty() && comparison.differences.empty() ? kExitOk : kExitNo;
}

}  // namespace contextctl
