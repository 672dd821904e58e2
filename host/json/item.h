// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_JSON_ITEM_H
#define CPP2C_HOST_JSON_ITEM_H

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <utility>

// Where something is wrong, and what: everything of a message that stands behind the name of the file.
struct Mistake {
  std::string text;
};

// One value in a JSON document and the way to it. The document outlives it.
class Item {
 public:
  explicit Item(const nlohmann::json& value, std::string place = "")
      : value_(value), place_(std::move(place)) {}

  // Throws the mistake that is here.
  [[noreturn]] void fail(const std::string& what) const;

  // Each fails if the value is another one.
  std::string text() const;
  std::string valueText() const;  // of a leaf, which may be written as a number or a flag
  std::int32_t integer() const;
  std::int32_t integerFrom(std::int32_t least) const;
  bool flag() const;
  bool isNull() const;

  // For an object. It may have these members and no others.
  void expectMembers(std::initializer_list<const char*> names) const;
  std::optional<Item> member(const char* name) const;
  Item required(const char* name) const;

  // Calls `read` with the name and the item of each member; for a list, with the item only.
  void eachMember(const std::function<void(const std::string& name, const Item& item)>& read) const;
  void eachElement(const std::function<void(const Item& item)>& read) const;

 private:
  void expect(bool fits, const char* what) const;
  template <typename Key>
  Item inside(const nlohmann::json& value, const Key& key) const;

  const nlohmann::json& value_;
  const std::string place_;  // keys and positions, as a JSON pointer
};

#endif
