// SPDX-License-Identifier: MIT
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>

#include "host/clock/clock.h"
#include "host/config/name.h"
#include "host/control/leaf_names.h"
#include "host/control/list_text.h"
#include "host/control/routes.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

constexpr const char* kDone = R"({"result":0})";

// Secrets are shown only to a client that asks for them.
std::string shownValue(const ValueType& type, const std::string& value, bool reveal) {
  return type.secret && !reveal ? lineOf(nullptr) : lineOf(value);
}

std::string describeLeaf(ConfigService& config, const std::string& fullname, const Leaf& leaf, bool reveal) {
  return objectText({{"name", lineOf(fullname)},
                     {"type", lineOf(leaf.type->name)},
                     {"value", shownValue(*leaf.type, config.value(fullname), reveal)},
                     {"computed", lineOf(leaf.computed)}});
}

const Leaf& requireLeaf(ConfigService& config, const std::string& fullname) {
  const Leaf* leaf = config.findLeaf(fullname);
  if (leaf == nullptr) throw util::Error(C_RESULT_NOT_FOUND, "there is no leaf " + util::quoted(fullname));
  return *leaf;
}

const Object* findObject(const ConfigService& config, const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  const bool by_number = parsed.ec == std::errc() && parsed.ptr == end;
  for (const auto& [key, object] : config.tree().objects()) {
    if (by_number ? key == number : object.name == text) return &object;
  }
  return nullptr;
}

const Object& requireObject(const ConfigService& config, const std::string& text) {
  const Object* object = findObject(config, text);
  if (object == nullptr) throw util::Error(C_RESULT_NOT_FOUND, "there is no object " + util::quoted(text));
  return *object;
}

std::string readLeaf(ConfigService& config, const ControlRequest& request) {
  const std::string name = request.parameter("name");
  const bool reveal = request.flag("reveal");
  return describeLeaf(config, name, requireLeaf(config, name), reveal);
}

void requireNotified(int result) {
  if (result != C_RESULT_SYSTEM_CALL) return;
  throw util::Error(result, "the change was made, but the callback of an observer failed; see the log");
}

std::string whyNotSet(const Leaf& leaf, const std::string& name, const std::string& value, int result) {
  if (result == C_RESULT_NOT_FOUND) return "the instance of " + util::quoted(name) + " does not exist";
  if (leaf.computed) return util::quoted(name) + " is computed and cannot be set";
  const std::string text = leaf.type->secret ? "the value" : util::quoted(value);
  return text + " is not a value of type " + leaf.type->name;
}

std::string writeLeaf(ConfigService& config, const ControlRequest& request) {
  const JsonValue body = request.body();
  body.allowOnly({"name", "value", "create"});
  const std::string name = body.required("name").string();
  const std::string value = body.required("value").string();
  const int option = body.booleanOr("create", false) ? C_CFM_CREATE : 0;
  const Leaf& leaf = requireLeaf(config, name);
  const int result = config.setValue(name, value, option);
  requireNotified(result);
  if (result != C_RESULT_OK) throw util::Error(result, whyNotSet(leaf, name, value, result));
  return kDone;
}

// Skips an instance that was deleted after its names were collected: a data provider may do that.
std::optional<std::string> nextLeaf(ConfigService& config, LeafNames& names, bool reveal) {
  while (const auto name = names.next()) {
    const auto& [fullname, object] = *name;
    const std::string instance(parentName(fullname));
    if (object->instances.count(instance) == 0) continue;
    const Leaf& leaf = *object->leaves.find(fullname.substr(instance.size()));
    return describeLeaf(config, fullname, leaf, reveal);
  }
  return std::nullopt;
}

ListText listTree(ConfigService& config, const ControlRequest& request) {
  const bool reveal = request.flag("reveal");
  LeafNames names(config.tree(), request.parameterOr("name", ""));
  return ListText(R"({"leaves":[)",
                  [&config, names, reveal]() mutable { return nextLeaf(config, names, reveal); });
}

std::string instancesOf(const Object& object) {
  std::string names;
  for (const auto& [name, instance] : object.instances) names += (names.empty() ? "" : ",") + lineOf(name);
  return '[' + names + ']';
}

std::string leavesOf(const Object& object) {
  std::string leaves;
  for (const Leaf& leaf : object.leaves) {
    leaves += (leaves.empty() ? "" : ",") +
              objectText({{"name", lineOf(leaf.name)},
                          {"type", lineOf(leaf.type->name)},
                          {"default", shownValue(*leaf.type, leaf.default_value, false)},
                          {"computed", lineOf(leaf.computed)}});
  }
  return '[' + leaves + ']';
}

std::string describeObject(const Object& object) {
  const bool multiple = object.dynamic || object.instances.count(object.name) == 0;
  return "{\"attribute\":" + lineOf(object.attribute) + ",\"dynamic\":" + lineOf(object.dynamic) +
         ",\"instances\":" + instancesOf(object) + ",\"leaves\":" + leavesOf(object) +
         ",\"multiple\":" + lineOf(multiple) + ",\"name\":" + lineOf(object.name) +
         ",\"number\":" + lineOf(object.number) + '}';
}

ListText listObjects(const ConfigService& config) {
  const auto& objects = config.tree().objects();
  return ListText(R"({"objects":[)", [&objects, next = objects.begin()]() mutable {
    return next != objects.end() ? std::optional(describeObject((next++)->second)) : std::nullopt;
  });
}

ListText listInstances(const ConfigService& config, const ControlRequest& request) {
  const auto& instances = requireObject(config, request.parameter("object")).instances;
  return ListText(R"({"instances":[)", [&instances, last = std::string()]() mutable {
    const auto next = instances.upper_bound(last);
    if (next == instances.end()) return std::optional<std::string>();
    last = next->first;
    return std::optional(lineOf(last));
  });
}

std::string addInstance(ConfigService& config, const ControlRequest& request) {
  const JsonValue body = request.body();
  body.allowOnly({"name"});
  const std::string name = body.required("name").string();
  const int result = config.addInstance(name);
  requireNotified(result);
  if (result == C_RESULT_REDUNDANT)
    throw util::Error(result, "the instance " + util::quoted(name) + " exists");
  if (result != C_RESULT_OK) {
    throw util::Error(result, util::quoted(name) + " cannot be an instance of any dynamic object");
  }
  return kDone;
}

std::string deleteInstance(ConfigService& config, const ControlRequest& request) {
  const std::string name = request.parameter("name");
  const int result = config.deleteInstance(name);
  requireNotified(result);
  if (result == C_RESULT_PARAM) {
    throw util::Error(result,
                      "the instance " + util::quoted(name) + " cannot be deleted: its object is not dynamic");
  }
  if (result != C_RESULT_OK) throw util::Error(result, "there is no instance " + util::quoted(name));
  return kDone;
}

std::string readAttribute(const ConfigService& config, const ControlRequest& request) {
  const Object& object = requireObject(config, request.parameter("object"));
  return objectText({{"object", lineOf(object.name)}, {"attribute", lineOf(object.attribute)}});
}

std::string writeAttribute(ConfigService& config, const ControlRequest& request) {
  const JsonValue body = request.body();
  body.allowOnly({"object", "value"});
  const Object& object = requireObject(config, body.required("object").string());
  config.setAttr(object.number, body.required("value").integer());
  return kDone;
}

std::string save(ConfigService& config) {
  const int result = config.save(1);
  if (result != C_RESULT_OK) throw util::Error(result, "the configuration cannot be saved; see the log");
  return kDone;
}

const char* nameOf(int operation) {
  switch (operation) {
    case C_CFM_ADDED:
      return "added";
    case C_CFM_DELETED:
      return "deleted";
    default:
      return "changed";
  }
}

std::string describeChange(ConfigService& config, const ConfigService::Change& change, const Clock& clock,
                           bool reveal) {
  const Leaf* leaf = change.object.leaves.find(change.leaf);
  std::string value = lineOf(nullptr);
  if (leaf != nullptr) {
    value = shownValue(*leaf->type, config.value(change.instance + change.leaf), reveal);
  }
  return objectText({{"object", lineOf(change.object.name)},
                     {"instance", lineOf(change.instance)},
                     {"operation", lineOf(nameOf(change.operation))},
                     {"leaf", lineOf(change.leaf)},
                     {"value", value},
                     {"time", lineOf(isoTime(clock.wallTime()))}});
}

}  // namespace

void addConfigRoutes(Router& router, ConfigService& config) {
  using Request = ControlRequest;
  router.answer("GET", "/leaf", [&](const Request& request) { return readLeaf(config, request); });
  router.answer("PUT", "/leaf", [&](const Request& request) { return writeLeaf(config, request); });
  router.list("/tree", [&](const Request& request) { return listTree(config, request); });
  router.list("/objects", [&](const Request&) { return listObjects(config); });
  router.list("/instances", [&](const Request& request) { return listInstances(config, request); });
  router.answer("POST", "/instances", [&](const Request& request) { return addInstance(config, request); });
  router.answer("DELETE", "/instances",
                [&](const Request& request) { return deleteInstance(config, request); });
  router.answer("GET", "/attribute", [&](const Request& request) { return readAttribute(config, request); });
  router.answer("PUT", "/attribute", [&](const Request& request) { return writeAttribute(config, request); });
  router.answer("POST", "/save", [&](const Request&) { return save(config); });
}

void addChangeRoutes(Router& router, ConfigService& config, Followers<ConfigService::Change>& followers,
                     const Clock& clock) {
  router.follow("/changes", [&](const ControlRequest& request, const Router::OpenStream& open) {
    const std::string prefix = request.parameterOr("name", "");
    const bool reveal = request.flag("reveal");
    followers.add(open(), [&config, &clock, prefix, reveal](const ConfigService::Change& change) {
      if (!util::startsWith(change.instance + change.leaf, prefix)) return std::string();
      return describeChange(config, change, clock, reveal);
    });
  });
}

}  // namespace host
