// SPDX-License-Identifier: MIT
#include "host/json/item.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/json/int32.h"
#include "util/text.h"

using nlohmann::json;

void Item::fail(const std::string& what) const {
  throw Mistake{(place_.empty() ? "" : ": " + place_) + ": " + what};
}

void Item::expect(bool fits, const char* what) const {
  if (!fits) fail(std::string("must be ") + what);
}

template <typename Key>
Item Item::inside(const json& value, const Key& key) const {
  return Item(value, place_ + (json::json_pointer() / key).to_string());
}

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
  const auto number = int32In(value_);
  if (!number) fail("must be a 32-bit integer");
  return *number;
}

std::int32_t Item::integerFrom(std::int32_t least) const {
  const std::int32_t number = integer();
  expect(number >= least, (std::to_string(least) + " or more").c_str());
  return number;
}

bool Item::flag() const {
  expect(value_.is_boolean(), "true or false");
  return value_.get<bool>();
}

bool Item::isNull() const {
  return value_.is_null();
}

void Item::expectMembers(std::initializer_list<const char*> names) const {
  eachMember([&](const std::string& name, const Item& item) {
    if (std::find(names.begin(), names.end(), name) == names.end()) item.fail("unknown key");
  });
}

std::optional<Item> Item::member(const char* name) const {
  auto found = value_.find(name);
  if (found == value_.end()) return std::nullopt;
  return inside(*found, name);
}

Item Item::required(const char* name) const {
  auto item = member(name);
  if (!item) fail(util::quoted(name) + " is missing");
  return *item;
}

void Item::eachMember(const std::function<void(const std::string&, const Item&)>& read) const {
  expect(value_.is_object(), "an object");
  for (const auto& [name, value] : value_.items()) read(name, inside(value, name));
}

void Item::eachElement(const std::function<void(const Item&)>& read) const {
  expect(value_.is_array(), "a list");
  for (std::size_t i = 0; i < value_.size(); i++) read(inside(value_[i], i));
}
