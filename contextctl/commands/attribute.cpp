// SPDX-License-Identifier: MIT
// attribute.
#include <ostream>

#include "contextctl/commands/commands.h"

namespace contextctl {

void showAttribute(const Session& session, const std::string& object) {
  const Answer answer = session.get("/attribute", {{"object", object}});
  session.show(answer, [&](std::ostream& out) { out << answer.record.text("attribute") << '\n'; });
}

void setAttribute(const Session& session, const std::string& object, int value) {
  session.show(session.put("/attribute", {{"object", object}, {"value", std::int64_t{value}}}));
}

}  // namespace contextctl
