// SPDX-License-Identifier: MIT
#include "host/json/value.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

using nlohmann::json;

bool isInt32(const json& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return value.is_number_unsigned() ? value.get<std::uint64_t>() <= std::uint64_t{Limits::max()}
                                    : value.is_number_integer() && value.get<std::int64_t>() >= Limits::min();
}

// Searches the document, so that values that are right need not know their place.
bool findPlace(const json& value, const json& wanted, json::json_pointer& place) {
  if (&value == &wanted) return true;
  if (!value.is_structured()) return false;
  for (const auto& [key, member] : value.items()) {
    place.push_back(key);
    if (findPlace(member, wanted, place)) return true;
    place.pop_back();
  }
  return false;
}

}  // namespace

void JsonValue::fail(const std::string& what) const {
  json::json_pointer place;
  findPlace(root_, value_, place);
  throw util::Error(C_RESULT_PARAM, source_ + (place.empty() ? "" : ": " + place.to_string()) + ": " + what);
}

void JsonValue::require(bool fits, const std::string& what) const {
  if (!fits) fail("must be " + what);
}

std::string JsonValue::string() const {
  require(value_.is_string(), "a string");
  return value_.get<std::string>();
}

std::string JsonValue::leafValue() const {
  require(value_.is_string() || value_.is_number_integer() || value_.is_boolean(),
          "a string, an integer, true or false");
  if (value_.is_string()) return value_.get<std::string>();
  if (value_.is_boolean()) return value_.get<bool>() ? "true" : "false";
  return value_.is_number_unsigned() ? std::to_string(value_.get<std::uint64_t>())
                                     : std::to_string(value_.get<std::int64_t>());
}

std::int32_t JsonValue::integer() const {
  require(isInt32(value_), "a 32-bit integer");
  return value_.get<std::int32_t>();
}

std::int32_t JsonValue::integerFrom(std::int32_t least) const {
  const std::int32_t number = integer();
  require(number >= least, std::to_string(least) + " or more");
  return number;
}

bool JsonValue::boolean() const {
  require(value_.is_boolean(), "true or false");
  return value_.get<bool>();
}

bool JsonValue::isNull() const {
  return value_.is_null();
}

void JsonValue::requireObject() const {
  require(value_.is_object(), "an object");
}

void JsonValue::allowOnly(std::initializer_list<const char*> names) const {
  eachMember([&](const std::string& name, const JsonValue& value) {
    if (std::find(names.begin(), names.end(), name) == names.end()) value.fail("unknown key");
  });
}

std::optional<JsonValue> JsonValue::member(const char* name) const {
  const auto found = value_.find(name);
  if (found == value_.end()) return std::nullopt;
  return inside(*found);
}

JsonValue JsonValue::required(const char* name) const {
  const auto found = value_.find(name);
  if (found == value_.end()) fail(util::quoted(name) + " is missing");
  return inside(*found);
}

bool JsonValue::booleanOr(const char* name, bool missing) const {
  const auto found = member(name);
  return found ? found->boolean() : missing;
}

void JsonValue::eachMember(
    const std::function<void(const std::string& name, const JsonValue& value)>& read) const {
  requireObject();
  for (const auto& [name, value] : value_.items()) read(name, inside(value));
}

void JsonValue::eachElement(const std::function<void(const JsonValue& value)>& read) const {
  require(value_.is_array(), "an array");
  for (const json& element : value_) read(inside(element));
}

}  // namespace host
