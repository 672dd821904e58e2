// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/output/table.h"
#include "util/text.h"

namespace contextctl {
namespace {

// A script gets the exact bytes of the value; a terminal must not obey its control characters.
std::string forOutput(const std::string& value) {
  return isatty(STDOUT_FILENO) == 1 ? util::printable(value) : value;
}

void getValues(const Session& session, const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    const Answer answer = session.connection().get("/leaf", leafQuery(name, session.reveal()));
    requireInstanceOf(session.connection(), name);
    text += (session.json() ? answer.json : forOutput(valueText(leafOf(answer.record).value))) + '\n';
  }
  session.out() << text;
}

void setValue(const Session& session, const std::string& name, const std::string& value, bool create) {
  Members members = {{"name", name}, {"value", value}};
  if (create) members.emplace_back("create", true);
  session.show(session.connection().put("/leaf", members));
}

Answer getTree(const Session& session, const std::string& prefix) {
  Answer answer = session.connection().get("/tree", leafQuery(prefix, session.reveal()));
  if (!prefix.empty() && answer.objectArray("leaves").empty()) failNoMatch(session.connection(), prefix);
  return answer;
}

void listLeaves(const Session& session, const std::string& prefix) {
  const Answer answer = getTree(session, prefix);
  session.show(answer, [&](std::ostream& out) {
    Table table({"NAME", "TYPE", "VALUE"});
    for (const Record& record : answer.objectArray("leaves")) {
      const Leaf leaf = leafOf(record);
      table.add({leaf.name, typeText(leaf), valueText(leaf.value)});
    }
    table.print(out);
  });
}

std::vector<std::string> splitName(const std::string& name) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= name.size();) {
    const size_t end = std::min(name.find('.', begin), name.size());
    parts.push_back(name.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

// Prints leaves as an indented tree: leaves with a common prefix share its lines.
class TreePrinter {
 public:
  explicit TreePrinter(std::ostream& out) : out_(out) {}

  void print(const Leaf& leaf) {
    const std::vector<std::string> parts = splitName(leaf.name);
    size_t depth = 0;
    while (depth + 1 < parts.size() && depth < path_.size() && parts[depth] == path_[depth]) depth++;
    path_.resize(depth);
    for (; depth + 1 < parts.size(); depth++) {
      printLine(depth, parts[depth]);
      path_.push_back(parts[depth]);
    }
    printLine(depth, parts.back() + " = " + valueText(leaf.value) + "  [" + typeText(leaf) + ']');
  }

 private:
  void printLine(size_t depth, const std::string& text) {
    out_ << std::string(2 * depth, ' ') << util::printable(text) << '\n';
  }

  std::ostream& out_;
  std::vector<std::string> path_;  // of the previous leaf
};

void showTree(const Session& session, const std::string& prefix) {
  const Answer answer = getTree(session, prefix);
  session.show(answer, [&](std::ostream& out) {
    TreePrinter printer(out);
    for (const Record& record : answer.objectArray("leaves")) printer.print(leafOf(record));
  });
}

void addGet(CommandSet& commands) {
  const auto names = std::make_shared<std::vector<std::string>>();
  commands
      .add("get", "Print the values of leaves, one per line", "  contextctl get Device.Hostname Device.Mtu",
           [=](const Session& session) { getValues(session, *names); })
      .require("LEAF", *names, "Full name of a leaf");
}

void addSet(CommandSet& commands) {
  struct Arguments {
    std::string leaf, value;
    bool create = false;
  };
  const auto arguments = std::make_shared<Arguments>();
  commands
      .add("set", "Set the value of a leaf",
           "  contextctl set Device.Hostname router\n  contextctl set Device.Note -- --none--",
           [=](const Session& session) {
             setValue(session, arguments->leaf, arguments->value, arguments->create);
           })
      .require("LEAF", arguments->leaf, "Full name of the leaf")
      .require("VALUE", arguments->value, "New value")
      .flag("--create", arguments->create, "Create the instance of the leaf if it does not exist");
}

using PrefixCommand = void (*)(const Session& session, const std::string& prefix);

void addPrefixCommand(CommandSet& commands, const std::string& name, const std::string& purpose,
                      PrefixCommand run) {
  const auto prefix = std::make_shared<std::string>();
  commands
      .add(name, purpose, "  contextctl " + name + " Device.Interfaces.",
           [=](const Session& session) { run(session, *prefix); })
      .accept("PREFIX", *prefix, "Prefix of the full names; default: all leaves");
}

}  // namespace

void addLeafCommands(CommandSet& commands) {
  addGet(commands);
  addSet(commands);
  addPrefixCommand(commands, "list", "List leaves with their types and values", listLeaves);
  addPrefixCommand(commands, "tree", "Show leaves as an indented tree", showTree);
}

}  // namespace contextctl
