// SPDX-License-Identifier: MIT
#include "contextctl/leaves/leaf.h"

#include "contextctl/connection/connection.h"

namespace contextctl {

Leaf leafOf(const Record& record) {
  return {record.text("name"), record.text("type"), record.value("value"), record.text("computed") == "true"};
}

Query leafQuery(const std::string& name, bool reveal) {
  return {{"name", name}, {"reveal", reveal ? "true" : ""}};
}

std::vector<Leaf> getLeaves(const Connection& connection, const std::string& prefix, bool reveal) {
  std::vector<Leaf> leaves;
  const Answer answer = connection.get("/tree", leafQuery(prefix, reveal));
  for (const Record& record : answer.objectArray("leaves")) leaves.push_back(leafOf(record));
  return leaves;
}

std::string valueText(const std::optional<std::string>& value) {
  return value.value_or("(hidden)");
}

std::string typeText(const Leaf& leaf) {
  return leaf.computed ? leaf.type + " (computed)" : leaf.type;
}

}  // namespace contextctl
