// SPDX-License-Identifier: MIT
#include "host/config/object_reader.h"

#include <set>
#include <string>
#include <utility>

#include "host/config/name.h"
#include "util/text.h"

namespace host {
namespace {

std::string readValue(const JsonValue& json, const ValueType& type) {
  std::string text = json.leafValue();
  const char* article = type.name[0] == 'i' ? " is not an " : " is not a ";
  if (!fits(type, text)) json.fail((type.secret ? "the value" : util::quoted(text)) + article + type.name);
  return text;
}

const ValueType& readType(const JsonValue& json) {
  const std::string name = json.string();
  const ValueType* type = findValueType(name);
  if (type == nullptr) {
    json.fail("unknown type " + util::quoted(name) + "; known types: " + valueTypeNames());
  }
  return *type;
}

Leaf readLeaf(const std::string& name, const JsonValue& json) {
  if (!isComponent(name)) json.fail("not a valid leaf name");
  json.allowOnly({"type", "default", "computed"});
  const ValueType& type = readType(json.required("type"));
  Leaf leaf{name, &type, type.initial};
  if (const auto value = json.member("default")) leaf.default_value = readValue(*value, type);
  leaf.computed = json.booleanOr("computed", false);
  return leaf;
}

Leaves readLeaves(const JsonValue& object) {
  std::vector<Leaf> leaves;
  if (const auto json = object.member("leaves")) {
    json->eachMember(
        [&](const std::string& name, const JsonValue& leaf) { leaves.push_back(readLeaf(name, leaf)); });
  }
  return Leaves(std::move(leaves));
}

Instance readInstance(const std::string& name, const JsonValue& json, const Leaves& leaves) {
  Instance instance{name, leaves.defaultValues()};
  json.eachMember([&](const std::string& leaf_name, const JsonValue& value) {
    const Leaf* leaf = leaves.find(leaf_name);
    if (leaf == nullptr) value.fail("unknown leaf");
    instance.values[leaf->position] = readValue(value, *leaf->type);
  });
  return instance;
}

void requireInstanceName(const std::string& name, const JsonValue& json, const Object& object) {
  if (!isObjectName(name) || parentName(name) != object.name) {
    json.fail("not a valid instance name; expected " + util::quoted(object.name + "NAME."));
  }
}

std::string readObjectName(const JsonValue& json) {
  std::string name = json.string();
  if (!isObjectName(name)) {
    json.fail(util::quoted(name) + " is not a valid object name; expected \"NAME.\" or \"NAME.NAME.\"");
  }
  return name;
}

void readInstances(const JsonValue& json, Object& object) {
  if (const auto instances = json.member("instances")) {
    instances->eachMember([&](const std::string& name, const JsonValue& instance) {
      requireInstanceName(name, instance, object);
      object.instances.emplace(name, readInstance(name, instance, object.leaves));
    });
  } else if (!object.dynamic) {
    object.instances.emplace(object.name, Instance{object.name, object.leaves.defaultValues()});
  }
}

Object readObject(const JsonValue& json) {
  json.allowOnly({"number", "name", "attribute", "dynamic", "leaves", "instances"});
  Object object;
  object.number = json.required("number").integer();
  object.name = readObjectName(json.required("name"));
  if (const auto attribute = json.member("attribute")) object.attribute = attribute->integer();
  object.dynamic = json.booleanOr("dynamic", false);
  object.leaves = readLeaves(json);
  readInstances(json, object);
  return object;
}

class ObjectListReader {
 public:
  std::vector<Object> read(const JsonValue& array) {
    array.eachElement([this](const JsonValue& json) { readOne(json); });
    array.eachElement([this](const JsonValue& json) { checkInstances(json); });
    return std::move(objects_);
  }

 private:
  void readOne(const JsonValue& json) {
    Object object = readObject(json);
    if (!numbers_.insert(object.number).second) {
      json.required("number").fail(std::to_string(object.number) + " is the number of another object");
    }
    if (!names_.insert(object.name).second) {
      json.required("name").fail(util::quoted(object.name) + " is the name of another object");
    }
    objects_.push_back(std::move(object));
  }

  // After all objects: the one of the same name may come later in the file.
  void checkInstances(const JsonValue& json) const {
    const auto instances = json.member("instances");
    if (!instances) return;
    instances->eachMember([this](const std::string& name, const JsonValue& instance) {
      if (names_.count(name) != 0) instance.fail("is the name of an object");
    });
  }

  std::vector<Object> objects_;
  std::set<int> numbers_;
  std::set<std::string> names_;
};

}  // namespace

std::vector<Object> readObjects(const JsonValue& array) {
  return ObjectListReader().read(array);
}

}  // namespace host
