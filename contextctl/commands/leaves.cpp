// SPDX-License-Identifier: MIT
// get, set, list.
#include <unistd.h>

#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/output/table.h"
#include "util/text.h"

namespace contextctl {
namespace {

// A script gets the value's very bytes, a terminal only what it may show.
std::string forOutput(const std::string& value) {
  return isatty(STDOUT_FILENO) == 1 ? util::printable(value) : value;
}

}  // namespace

void getValues(const Session& session, const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    const Answer answer = session.get("/leaf", leafQuery(name, session.reveal()));
    text += (session.json() ? answer.json : forOutput(shown(leafOf(answer.record).value))) + '\n';
  }
  session.out() << text;
}

void setValue(const Session& session, const std::string& name, const std::string& value, bool create) {
  Members members = {{"name", name}, {"value", value}};
  if (create) members.emplace_back("create", true);
  session.show(session.put("/leaf", members));
}

void listLeaves(const Session& session, const std::string& prefix) {
  const Answer answer = session.get("/tree", leafQuery(prefix, session.reveal()));
  session.show(answer, [&](std::ostream& out) {
    Table table({"NAME", "TYPE", "VALUE"});
    for (const Record& record : answer.list("leaves")) {
      const Leaf leaf = leafOf(record);
      table.add({leaf.name, shownType(leaf), shown(leaf.value)});
    }
    table.print(out);
  });
}

}  // namespace contextctl
