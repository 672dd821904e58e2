// SPDX-License-Identifier: MIT
// attribute.
#include <algorithm>
#include <ostream>

#include "contextctl/commands/commands.h"

namespace {

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() < 10 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A change names its object by number.
std::int64_t numberOf(const Session& session, const std::string& object) {
  if (isNumber(object)) return std::stoll(object);
  const Answer answer = session.get("/objects");
  for (const Record& record : answer.list("objects"))
    if (record.text("name") == object) return static_cast<std::int64_t>(record.number("number"));
  throw Failure(kExitNo, "unknown object " + object);
}

}  // namespace

void showAttribute(const Session& session, const std::string& object) {
  const Answer answer = session.get("/attribute", {{"object", object}});
  session.show(answer, [&](std::ostream& out) { out << answer.record.text("attribute") << '\n'; });
}

void setAttribute(const Session& session, const std::string& object, int value) {
  session.show(
      session.put("/attribute", {{"object", numberOf(session, object)}, {"value", std::int64_t{value}}}));
}
