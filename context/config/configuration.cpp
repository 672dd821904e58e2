// SPDX-License-Identifier: MIT
// From JSON to declarations. The only source that sees the JSON library, over which compilers take long.
#include "context/config/configuration.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <utility>

#include "context/config/name.h"
#include "context/config/read_file.h"
#include "context/start_error.h"
#include "include_c"

namespace {

using nlohmann::json;
using Pointer = json::json_pointer;

// Where something is wrong, and what: everything of a message that stands behind the name of the file.
struct Mistake {
  std::string text;
};

[[noreturn]] void fail(const Pointer& place, const std::string& what) {
  throw Mistake{(place.empty() ? "" : ": " + place.to_string()) + ": " + what};
}

std::string inQuotes(const std::string& text) {
  return '"' + text + '"';
}

// Builds a document and refuses keys that stand twice in one object, of which the library keeps the last.
class DocumentBuilder final : public json::json_sax_t {
 public:
  explicit DocumentBuilder(const std::string& text) : text_(text) {}

  json take() { return std::move(root_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t& /*token*/) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& value) override { return add(std::move(value)); }
  bool start_object(std::size_t /*size*/) override { return open(json::object()); }
  bool start_array(std::size_t /*size*/) override { return open(json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override;
  bool parse_error(std::size_t read, const std::string& token, const json::exception& error) override;

 private:
  struct Level {
    json* node;       // an object or a list
    std::string key;  // of the member that comes next
  };

  json* append(json value);
  bool add(json value) { return append(std::move(value)) != nullptr; }
  bool open(json value);
  bool close();
  Pointer place() const;

  const std::string& text_;
  json root_;
  std::vector<Level> levels_;
};

json* DocumentBuilder::append(json value) {
  if (levels_.empty()) return &(root_ = std::move(value));
  const Level& parent = levels_.back();
  if (parent.node->is_object()) return &((*parent.node)[parent.key] = std::move(value));
  parent.node->push_back(std::move(value));
  return &parent.node->back();
}

bool DocumentBuilder::open(json value) {
  levels_.push_back({append(std::move(value)), ""});
  return true;
}

bool DocumentBuilder::close() {
  levels_.pop_back();
  return true;
}

bool DocumentBuilder::key(string_t& name) {
  Level& object = levels_.back();
  object.key = std::move(name);
  if (object.node->contains(object.key)) fail(place(), "stands twice");
  return true;
}

Pointer DocumentBuilder::place() const {
  Pointer place;
  for (const Level& level : levels_) {
    if (level.node->is_object()) {
      place /= level.key;
    } else {
      place /= level.node->size() - 1;
    }
  }
  return place;
}

// The error's own text quotes what was read last, which may be secret.
bool DocumentBuilder::parse_error(std::size_t read, const std::string& /*token*/,
                                  const json::exception& /*error*/) {
  const std::string before = text_.substr(0, std::max<std::size_t>(read, 1) - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto column = before.size() - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0
  throw Mistake{':' + std::to_string(line) + ':' + std::to_string(column) + ": not valid JSON"};
}

// One value in the document and the way to it.
class Item {
 public:
  explicit Item(const json& value, Pointer place = Pointer()) : value_(value), place_(std::move(place)) {}

  [[noreturn]] void fail(const std::string& what) const { ::fail(place_, what); }

  std::string text() const;
  std::string valueText() const;  // of a leaf, which may be written as a number or a flag
  std::int32_t integer() const;
  bool flag() const;

  // For an object. It may have these members and no others.
  void expectMembers(std::initializer_list<const char*> names) const;
  std::optional<Item> member(const char* name) const;
  Item required(const char* name) const;

  // Calls `read` with the name and the item of each member; for a list, with the item only.
  template <typename Read>
  void eachMember(Read read) const;
  template <typename Read>
  void eachElement(Read read) const;

 private:
  void expect(bool fits, const char* what) const {
    if (!fits) fail(std::string("must be ") + what);
  }

  const json& value_;
  Pointer place_;
};

std::string Item::text() const {
  expect(value_.is_string(), "a text");
  return value_.get<std::string>();
}

std::string Item::valueText() const {
  expect(value_.is_string() || value_.is_number_integer() || value_.is_boolean(),
         "a text, a whole number, true or false");
  return value_.is_string() ? value_.get<std::string>() : value_.dump();
}

std::int32_t Item::integer() const {
  using Limits = std::numeric_limits<std::int32_t>;
  const bool fits = value_.is_number_unsigned()
                        ? value_.get<std::uint64_t>() <= std::uint64_t{Limits::max()}
                        : value_.is_number_integer() && value_.get<std::int64_t>() >= Limits::min();
  expect(fits, "a 32-bit integer");
  return value_.get<std::int32_t>();
}

bool Item::flag() const {
  expect(value_.is_boolean(), "true or false");
  return value_.get<bool>();
}

void Item::expectMembers(std::initializer_list<const char*> names) const {
  eachMember([&](const std::string& name, const Item& item) {
    if (std::find(names.begin(), names.end(), name) == names.end()) item.fail("unknown key");
  });
}

std::optional<Item> Item::member(const char* name) const {
  auto found = value_.find(name);
  if (found == value_.end()) return std::nullopt;
  return Item(*found, place_ / name);
}

Item Item::required(const char* name) const {
  auto item = member(name);
  if (!item) fail(inQuotes(name) + " is missing");
  return *item;
}

template <typename Read>
void Item::eachMember(Read read) const {
  expect(value_.is_object(), "an object");
  for (const auto& [name, value] : value_.items()) read(name, Item(value, place_ / name));
}

template <typename Read>
void Item::eachElement(Read read) const {
  expect(value_.is_array(), "a list");
  for (std::size_t i = 0; i < value_.size(); i++) read(Item(value_[i], place_ / i));
}

std::string readValue(const Item& item, const ValueType& type) {
  std::string text = item.valueText();
  const char* article = type.name[0] == 'i' ? " is not an " : " is not a ";
  if (!fits(type, text)) item.fail((type.secret ? "the value" : inQuotes(text)) + article + type.name);
  return text;
}

const ValueType& readType(const Item& item) {
  const std::string name = item.text();
  const ValueType* type = findValueType(name);
  if (type == nullptr) item.fail(inQuotes(name) + " is not a type");
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
  if (!isObjectName(name)) item.fail(inQuotes(name) + " is not components, each followed by \".\"");
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
      item.required("name").fail(inQuotes(object.name) + " is the name of another object");
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
  const Item limit = item.required("limitMs");
  const int ms = limit.integer();
  if (ms < 1) limit.fail("must be 1 or more");
  return std::chrono::milliseconds(ms);
}

Configuration readDocument(const Item& item) {
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
  try {
    DocumentBuilder builder(text);
    json::sax_parse(text, &builder);
    const json document = builder.take();
    return readDocument(Item(document));
  } catch (const Mistake& mistake) {
    throw StartError(C_RESULT_PARAM, source + mistake.text);
  }
}

Configuration readConfiguration(const std::string& file) {
  return parseConfiguration(readFile(file), file);
}
