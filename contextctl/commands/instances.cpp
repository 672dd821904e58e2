// SPDX-License-Identifier: MIT
// instances, add, del.
#include <ostream>

#include "contextctl/commands/commands.h"
#include "util/text.h"

namespace contextctl {

void listInstances(const Session& session, const std::string& object) {
  const Answer answer = session.get("/instances", {{"object", object}});
  session.show(answer, [&](std::ostream& out) {
    for (const std::string& name : answer.nameList("instances")) out << util::printable(name) << '\n';
  });
}

void addInstance(const Session& session, const std::string& name) {
  session.show(session.post("/instances", {{"name", name}}));
}

void deleteInstance(const Session& session, const std::string& name) {
  session.show(session.remove("/instances", {{"name", name}}));
}

}  // namespace contextctl
