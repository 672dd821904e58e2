// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <algorithm>
#include <iostream>
#include <memory>

#include "contextctl/commands/command_set.h"
#include "contextctl/leaves/comparison.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/leaves/leaf_file.h"
#include "contextctl/output/table.h"
#include "contextctl/system/files.h"
#include "util/text.h"

namespace contextctl {
namespace {

// A value of a difference; nullopt: a password that is not to be shown.
std::optional<std::string> shownValue(const Session& session, const Difference& difference,
                                      const std::string& value) {
  if (difference.type == "pwd" && !session.reveal()) return std::nullopt;
  return value;
}

Value toJsonValue(const std::optional<std::string>& text) {
  return text ? Value(*text) : Value(nullptr);
}

Members membersOf(const Session& session, const Difference& d) {
  return {{"name", d.name},
          {"type", d.type},
          {"context", toJsonValue(shownValue(session, d, d.context))},
          {"file", toJsonValue(shownValue(session, d, d.file))}};
}

void printDifferences(const Session& session, const std::vector<Difference>& differences) {
  if (session.json()) {
    std::vector<Members> items;
    items.reserve(differences.size());
    for (const Difference& difference : differences) items.push_back(membersOf(session, difference));
    session.out() << writeArray("differences", items) << '\n';
  } else if (!differences.empty()) {
    Table table({"NAME", "CONTEXT", "FILE"});
    for (const Difference& d : differences) {
      table.add(
          {d.name, valueText(shownValue(session, d, d.context)), valueText(shownValue(session, d, d.file))});
    }
    table.print(session.out());
  }
}

void printConflicts(const Comparison& comparison) {
  for (const std::string& conflict : comparison.conflicts)
    std::cerr << "contextctl: " << util::printable(conflict) << '\n';
}

// The context may still refuse a value; the leaves set before it keep their new values.
void apply(const Session& session, const std::vector<Difference>& differences) {
  size_t set = 0;
  for (const Difference& difference : differences) {
    try {
      session.connection().put("/leaf", {{"name", difference.name}, {"value", difference.file}});
      set++;
    } catch (const Failure& failure) {
      throw Failure(failure.status(), difference.name + ": " + failure.what() + "; leaves set before: " +
                                          std::to_string(set) + " of " + std::to_string(differences.size()));
    }
  }
}

// Reads the file first, so that an error in the file is reported before one of the connection.
Comparison compareWithContext(const Session& session, const std::string& path) {
  const std::vector<Leaf> file = readLeafFile(path);
  return compare(file, getLeaves(session.connection(), "", true));
}

// JSON cannot contain bytes that are not UTF-8: the context writes U+FFFD instead, which would be imported.
void requireUtf8(const Leaf& leaf) {
  constexpr const char* kReplacement = "\xef\xbf\xbd";
  if (leaf.value->find(kReplacement) == std::string::npos) return;
  throw Failure(kExitNo,
                leaf.name + ": the value cannot be exported: it has U+FFFD, or bytes that are not UTF-8");
}

void exportLeaves(const Session& session, const std::string& prefix, const std::string& file) {
  std::vector<Leaf> leaves = getLeaves(session.connection(), prefix, session.reveal());
  if (!prefix.empty() && leaves.empty()) failNoMatch(session.connection(), prefix);
  const auto is_left_out = [](const Leaf& leaf) { return leaf.computed || !leaf.value; };
  leaves.erase(std::remove_if(leaves.begin(), leaves.end(), is_left_out), leaves.end());
  for (const Leaf& leaf : leaves) requireUtf8(leaf);
  if (file.empty() || file == "-") {
    session.out() << formatLeaves(leaves);
  } else {
    writeFile(file, formatLeaves(leaves));
  }
}

ExitStatus importLeaves(const Session& session, const std::string& file) {
  const Comparison comparison = compareWithContext(session, file);
  printConflicts(comparison);
  if (!comparison.conflicts.empty()) return kExitNo;
  apply(session, comparison.differences);
  printDifferences(session, comparison.differences);
  return kExitOk;
}

ExitStatus diffLeaves(const Session& session, const std::string& file) {
  const Comparison comparison = compareWithContext(session, file);
  printConflicts(comparison);
  printDifferences(session, comparison.differences);
  return comparison.conflicts.empty() && comparison.differences.empty() ? kExitOk : kExitNo;
}

void addExport(CommandSet& commands) {
  struct Arguments {
    std::string prefix, file;
  };
  const auto arguments = std::make_shared<Arguments>();
  commands
      .add("export", "Write leaves to a file, without passwords and computed leaves",
           "  contextctl export > all.json\n"
           "  contextctl export Device.Interfaces. interfaces.json",
           [=](const Session& session) { exportLeaves(session, arguments->prefix, arguments->file); })
      .accept("PREFIX", arguments->prefix, "Prefix of the full names; \"\" for all leaves")
      .accept("FILE", arguments->file, "Output file; default and \"-\": standard output");
}

using FileCommand = ExitStatus (*)(const Session& session, const std::string& file);

void addFileCommand(CommandSet& commands, const std::string& name, const std::string& purpose,
                    FileCommand run) {
  const auto file = std::make_shared<std::string>();
  commands
      .add(name, purpose, "  contextctl " + name + " all.json",
           [=](const Session& session) { return run(session, *file); })
      .require("FILE", *file, "Exported file; \"-\" for standard input");
}

}  // namespace

void addLeafFileCommands(CommandSet& commands) {
  addExport(commands);
  addFileCommand(commands, "import", "Set the leaves that differ from a file, and print them", importLeaves);
  addFileCommand(commands, "diff", "Print the leaves that differ from a file", diffLeaves);
}

}  // namespace contextctl
