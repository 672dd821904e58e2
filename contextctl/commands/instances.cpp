// SPDX-License-Identifier: MIT
// instances, add, del.
#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/printable.h"

void listInstances(const Session& session, const std::string& object) {
  const Answer answer = session.get("/instances", {{"object", object}});
  if (session.json()) {
    session.out() << answer.json << '\n';
    return;
  }
  for (const std::string& name : answer.nameList("instances")) session.out() << printable(name) << '\n';
}

void addInstance(const Session& session, const std::string& name) {
  session.report(session.post("/instances", {{"name", name}}));
}

void deleteInstance(const Session& session, const std::string& name) {
  session.report(session.remove("/instances", {{"name", name}}));
}
