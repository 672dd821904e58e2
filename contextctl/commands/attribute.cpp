// SPDX-License-Identifier: MIT
// attr.
#include <algorithm>
#include <ostream>

#include "contextctl/commands/commands.h"

namespace {

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() < 10 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The protocol knows objects by number here; people know them by name, whose last dot they leave out.
std::int64_t numberOf(const Session& session, const std::string& object) {
  if (isNumber(object)) return std::stoll(object);
  const Answer answer = session.get("/objects");
  for (const Record& record : answer.list("objects")) {
    const std::string name = record.text("name");
    if (name == object || name == object + '.') return static_cast<std::int64_t>(record.number("number"));
  }
  throw Failure(kExitNo, "unknown object " + object);
}

}  // namespace

void showAttribute(const Session& session, const std::string& object) {
  const Answer answer = session.get("/attribute", {{"object", std::to_string(numberOf(session, object))}});
  session.out() << (session.json() ? answer.json : answer.record.text("value")) << '\n';
}

void setAttribute(const Session& session, const std::string& object, int value) {
  session.report(
      session.put("/attribute", {{"object", numberOf(session, object)}, {"value", std::int64_t{value}}}));
}
