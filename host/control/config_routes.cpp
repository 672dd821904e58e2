// SPDX-License-Identifier: MIT
// The configuration tree by HTTP.
#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "host/control/control.h"
#include "host/control/refusal.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/text.h"

using nlohmann::json;

namespace {

const json kDone = {{"result", 0}};

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// Passwords are shown to nobody who does not ask for them.
json shown(const ValueType& type, const std::string& value, bool reveal) {
  return type.secret && !reveal ? json() : json(value);
}

json leafOf(ConfigService& config, const std::string& fullname, const Leaf& leaf, bool reveal) {
  return {{"name", fullname},
          {"type", leaf.type->name},
          {"value", shown(*leaf.type, config.value(fullname), reveal)},
          {"computed", leaf.computed}};
}

const Leaf& requireLeaf(ConfigService& config, const std::string& fullname) {
  const Leaf* leaf = config.findLeaf(fullname);
  if (leaf == nullptr) throw Refusal(C_RESULT_NOT_FOUND, "there is no leaf " + util::quoted(fullname));
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
  if (object == nullptr) throw Refusal(C_RESULT_NOT_FOUND, "there is no object " + util::quoted(text));
  return *object;
}

json readLeaf(ConfigService& config, const ApiRequest& request) {
  const std::string name = request.parameter("name");
  const bool reveal = request.flag("reveal");
  return leafOf(config, name, requireLeaf(config, name), reveal);
}

std::string whyNotSet(const Leaf& leaf, const std::string& name, const std::string& value, int result) {
  if (result == C_RESULT_NOT_FOUND) return "the instance of " + util::quoted(name) + " does not exist";
  if (leaf.computed) return util::quoted(name) + " is computed";
  const std::string text = leaf.type->secret ? "the value" : util::quoted(value);
  return text + " is no value of the type " + leaf.type->name;
}

json writeLeaf(ConfigService& config, const ApiRequest& request) {
  request.expectOnly({"name", "value", "create"});
  const std::string name = request.text("name");
  const std::string value = request.text("value");
  const int option = request.flagOf("create") ? C_CFM_CREATE : 0;
  const Leaf& leaf = requireLeaf(config, name);
  const int result = config.setValue(name, value, option);
  if (result != C_RESULT_OK) throw Refusal(result, whyNotSet(leaf, name, value, result));
  return kDone;
}

// The names come first: a provider that is asked for a value may add and delete instances.
std::vector<std::string> leafNames(const ConfigService& config, const std::string& prefix) {
  std::vector<std::string> names;
  for (const auto& [number, object] : config.tree().objects()) {
    for (const auto& [instance, values] : object.instances) {
      for (const auto& [leaf, declaration] : object.leaves) {
        if (startsWith(instance + leaf, prefix)) names.push_back(instance + leaf);
      }
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

json listTree(ConfigService& config, const ApiRequest& request) {
  const bool reveal = request.flag("reveal");
  json leaves = json::array();
  for (const std::string& name : leafNames(config, request.parameterOr("name", ""))) {
    if (const Leaf* leaf = config.findLeaf(name)) leaves.push_back(leafOf(config, name, *leaf, reveal));
  }
  return {{"leaves", std::move(leaves)}};
}

json instancesOf(const Object& object) {
  json names = json::array();
  for (const auto& [name, values] : object.instances) names.push_back(name);
  return names;
}

json describe(const Object& object) {
  json leaves = json::array();
  for (const auto& [name, leaf] : object.leaves) {
    leaves.push_back({{"name", name},
                      {"type", leaf.type->name},
                      {"default", shown(*leaf.type, leaf.default_value, false)},
                      {"computed", leaf.computed}});
  }
  const bool multiple = object.dynamic || object.instances.count(object.name) == 0;
  return {{"number", object.number},         {"name", object.name},
          {"dynamic", object.dynamic},       {"multiple", multiple},
          {"attribute", object.attribute},   {"leaves", std::move(leaves)},
          {"instances", instancesOf(object)}};
}

json listObjects(const ConfigService& config) {
  json objects = json::array();
  for (const auto& [number, object] : config.tree().objects()) objects.push_back(describe(object));
  return {{"objects", std::move(objects)}};
}

json addInstance(ConfigService& config, const ApiRequest& request) {
  request.expectOnly({"name"});
  const std::string name = request.text("name");
  const int result = config.addInstance(name);
  if (result == C_RESULT_REDUNDANT) throw Refusal(result, util::quoted(name) + " exists");
  if (result != C_RESULT_OK) throw Refusal(result, "there can be no instance " + util::quoted(name));
  return kDone;
}

json deleteInstance(ConfigService& config, const ApiRequest& request) {
  const std::string name = request.parameter("name");
  const int result = config.deleteInstance(name);
  if (result == C_RESULT_PARAM)
    throw Refusal(result, "the instance " + util::quoted(name) + " cannot be deleted");
  if (result != C_RESULT_OK) throw Refusal(result, "there is no instance " + util::quoted(name));
  return kDone;
}

json readAttribute(const ConfigService& config, const ApiRequest& request) {
  const Object& object = requireObject(config, request.parameter("object"));
  return {{"object", object.name}, {"attribute", object.attribute}};
}

json writeAttribute(ConfigService& config, const ApiRequest& request) {
  request.expectOnly({"object", "value"});
  const Object& object = requireObject(config, request.text("object"));
  config.setAttr(object.number, request.number("value"));
  return kDone;
}

json save(ConfigService& config) {
  const int result = config.save(1);
  if (result != C_RESULT_OK) throw Refusal(result, "the configuration could not be saved; the log says why");
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

json describe(ConfigService& config, const ConfigService::Change& change, bool reveal) {
  auto leaf = change.object.leaves.find(change.leaf);
  const bool has_value = leaf != change.object.leaves.end();
  return {{"object", change.object.name},
          {"instance", change.instance},
          {"operation", nameOf(change.operation)},
          {"leaf", change.leaf},
          {"value", has_value ? shown(*leaf->second.type, config.value(change.instance + change.leaf), reveal)
                              : json()}};
}

}  // namespace

void Control::addConfigRoutes() {
  ConfigService& config = controlled_.config;
  api_.answer("GET", "/leaf", [&](const ApiRequest& request) { return readLeaf(config, request); });
  api_.answer("PUT", "/leaf", [&](const ApiRequest& request) { return writeLeaf(config, request); });
  api_.answer("GET", "/tree", [&](const ApiRequest& request) { return listTree(config, request); });
  api_.answer("GET", "/objects", [&](const ApiRequest&) { return listObjects(config); });
  api_.answer("GET", "/instances", [&](const ApiRequest& request) -> json {
    return {{"instances", instancesOf(requireObject(config, request.parameter("object")))}};
  });
  api_.answer("POST", "/instances", [&](const ApiRequest& request) { return addInstance(config, request); });
  api_.answer("DELETE", "/instances",
              [&](const ApiRequest& request) { return deleteInstance(config, request); });
  api_.answer("GET", "/attribute", [&](const ApiRequest& request) { return readAttribute(config, request); });
  api_.answer("PUT", "/attribute",
              [&](const ApiRequest& request) { return writeAttribute(config, request); });
  api_.answer("POST", "/save", [&](const ApiRequest&) { return save(config); });
  api_.follow("/changes", [&](const ApiRequest& request, const auto& open) {
    const std::string prefix = request.parameterOr("name", "");
    const bool reveal = request.flag("reveal");
    changes_.add(open(), [this, &config, prefix, reveal](const ConfigService::Change& change) {
      if (!startsWith(change.instance + change.leaf, prefix)) return std::string();
      json news = describe(config, change, reveal);
      news["time"] = now();
      return lineOf(news);
    });
  });
}
