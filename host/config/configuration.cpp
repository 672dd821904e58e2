// SPDX-License-Identifier: MIT
#include "host/config/configuration.h"

#include <set>
#include <utility>

#include "host/config/name.h"
#include "host/json/document.h"
#include "host/json/read_file.h"
#include "util/text.h"

namespace {

std::string readValue(const Item& item, const ValueType& type) {
  std::string text = item.valueText();
  const char* article = type.name[0] == 'i' ? " is not an " : " is not a ";
  if (!fits(type, text)) item.fail((type.secret ? "the value" : util::quoted(text)) + article + type.name);
  return text;
}

const ValueType& readType(const Item& item) {
  const std::string name = item.text();
  const ValueType* type = findValueType(name);
  if (type == nullptr) item.fail(util::quoted(name) + " is not a type");
  return *type;
}

Leaf readLeaf(const std::string& name, const Item& item) {
  if (!isComponent(name)) item.fail("is not the name of a leaf");
  item.expectMembers({"type", "default", "computed"});
  const ValueType& type = readType(item.required("type"));
  Leaf leaf{&type, type.initial};
  if (auto value = item.member("default")) leaf.default_value = readValue(*value, type);
  if (auto computed = item.member("computed")) leaf.computed = computed->flag();
  return leaf;
}

Values readInstance(const std::string& name, const Item& item, const Object& object) {
  if (!isObjectName(name) || parentName(name) != object.name) {
    item.fail("is not " + object.name + ", one component and \".\"");
  }
  Values values;
  item.eachMember([&](const std::string& leaf_name, const Item& value) {
    auto leaf = object.leaves.find(leaf_name);
    if (leaf == object.leaves.end()) value.fail("unknown leaf");
    values.emplace(leaf_name, readValue(value, *leaf->second.type));
  });
  return values;
}

std::string readObjectName(const Item& item) {
  std::string name = item.text();
  if (!isObjectName(name)) item.fail(util::quoted(name) + " is not components, each followed by \".\"");
  return name;
}

void readInstances(const Item& item, Object& object) {
  auto instances = item.member("instances");
  if (instances) {
    instances->eachMember([&](const std::string& name, const Item& instance) {
      object.instances.emplace(name, readInstance(name, instance, object));
    });
  } else if (!object.dynamic) {
    object.instances.emplace(object.name, Values());
  }
}

Object readObject(const Item& item) {
  item.expectMembers({"number", "name", "attribute", "dynamic", "leaves", "instances"});
  Object object;
  object.number = item.required("number").integer();
  object.name = readObjectName(item.required("name"));
  if (auto attribute = item.member("attribute")) object.attribute = attribute->integer();
  if (auto dynamic = item.member("dynamic")) object.dynamic = dynamic->flag();
  if (auto leaves = item.member("leaves")) {
    leaves->eachMember([&](const std::string& name, const Item& leaf) {
      object.leaves.emplace(name, readLeaf(name, leaf));
    });
  }
  readInstances(item, object);
  return object;
}

class ObjectListReader {
 public:
  std::vector<Object> read(const Item& list) {
    list.eachElement([this](const Item& item) { readOne(item); });
    list.eachElement([this](const Item& item) { checkInstances(item); });
    return std::move(objects_);
  }

 private:
  void readOne(const Item& item) {
    Object object = readObject(item);
    if (!numbers_.insert(object.number).second) {
      item.required("number").fail(std::to_string(object.number) + " is the number of another object");
    }
    if (!names_.insert(object.name).second) {
      item.required("name").fail(util::quoted(object.name) + " is the name of another object");
    }
    objects_.push_back(std::move(object));
  }

  void checkInstances(const Item& item) const {
    auto instances = item.member("instances");
    if (!instances) return;
    instances->eachMember([this](const std::string& name, const Item& instance) {
      if (names_.count(name) != 0) instance.fail("is the name of an object");
    });
  }

  std::vector<Object> objects_;
  std::set<int> numbers_;
  std::set<std::string> names_;
};

std::chrono::milliseconds readHeartbeat(const Item& item) {
  item.expectMembers({"limitMs"});
  return std::chrono::milliseconds(item.required("limitMs").integerFrom(1));
}

Configuration readAll(const Item& item) {
  item.expectMembers({"heartbeat", "modules", "objects"});
  Configuration configuration;
  if (auto heartbeat = item.member("heartbeat")) configuration.heartbeat_limit = readHeartbeat(*heartbeat);
  if (auto modules = item.member("modules")) {
    modules->eachElement([&](const Item& module) { configuration.modules.push_back(module.text()); });
  }
  if (auto objects = item.member("objects")) configuration.objects = ObjectListReader().read(*objects);
  return configuration;
}

}  // namespace

Configuration parseConfiguration(const std::string& text, const std::string& source) {
  Configuration configuration;
  readDocument(text, source, [&](const Item& item) { configuration = readAll(item); });
  return configuration;
}

Configuration readConfiguration(const std::string& file) {
  return parseConfiguration(readFile(file), file);
}
