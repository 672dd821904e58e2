// SPDX-License-Identifier: MIT
#include "contextctl/leaves/leaf.h"

#include <algorithm>

#include "contextctl/connection/connection.h"
#include "contextctl/leaves/near_name.h"
#include "contextctl/system/failure.h"
#include "util/text.h"

namespace contextctl {
namespace {

// The name up to the last dot before its last character; empty: there is none.
std::string parentOf(const std::string& name) {
  const size_t dot = name.size() < 2 ? std::string::npos : name.rfind('.', name.size() - 2);
  return dot == std::string::npos ? "" : name.substr(0, dot + 1);
}

// The instances of an object; nullopt if there is no such object.
std::optional<std::vector<std::string>> instancesOf(const Connection& connection, const std::string& object) {
  try {
    return connection.get("/instances", {{"object", object}}).stringArray("instances");
  } catch (const Failure& failure) {
    if (failure.status() != kExitNo) throw;
    return std::nullopt;
  }
}

}  // namespace

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

void requireInstanceOf(const Connection& connection, const std::string& name) {
  const std::string instance = parentOf(name), object = parentOf(instance);
  if (object.empty() || instancesOf(connection, instance)) return;  // the leaf of an object with one instance
  const auto instances = instancesOf(connection, object);
  if (!instances || std::find(instances->begin(), instances->end(), instance) != instances->end()) return;
  throw Failure(kExitNo, "the instance " + util::quoted(instance) + " does not exist");
}

void failNoMatch(const Connection& connection, const std::string& prefix) {
  const std::string near = findNearName(prefix, getLeaves(connection, "", false));
  const std::string advice = near.empty() ? "" : "; did you mean " + util::quoted(near) + '?';
  throw Failure(kExitNo, "no leaf begins with " + util::quoted(prefix) + advice);
}

std::string valueText(const std::optional<std::string>& value) {
  return value.value_or("(hidden)");
}

std::string typeText(const Leaf& leaf) {
  return leaf.computed ? leaf.type + " (computed)" : leaf.type;
}

}  // namespace contextctl
