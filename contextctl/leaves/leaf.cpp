// SPDX-License-Identifier: MIT
#include "contextctl/leaves/leaf.h"

#include "contextctl/commands/session.h"

namespace contextctl {

Leaf leafOf(const Record& record) {
  return {record.text("name"), record.text("type"), record.value("value"), record.text("computed") == "true"};
}

Client::Query leafQuery(const std::string& name, bool reveal) {
  return {{"name", name}, {"reveal", reveal ? "true" : ""}};
}

std::vector<Leaf> getLeaves(const Session& session, const std::string& prefix, bool reveal) {
  std::vector<Leaf> leaves;
  const Answer answer = session.get("/tree", leafQuery(prefix, reveal));
  for (const Record& record : answer.list("leaves")) leaves.push_back(leafOf(record));
  return leaves;
}

std::string shown(const std::optional<std::string>& value) {
  return value.value_or("(hidden)");
}

std::string shownType(const Leaf& leaf) {
  return leaf.computed ? leaf.type + " (computed)" : leaf.type;
}

}  // namespace contextctl
