// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_JSON_VALUE_H
#define CPP2C_HOST_JSON_VALUE_H

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace host {

// One value of a JsonDocument, read with checks. Each failed check throws util::Error with C_RESULT_PARAM and
// a message that names the document and the place: "gateway.json: /objects/0/name: must be a string". The
// document must outlive it.
class JsonValue {
 public:
  JsonValue(const nlohmann::json& value, const nlohmann::json& root, const std::string& source)
      : value_(value), root_(root), source_(source) {}

  // Throws the error for a mistake in this value.
  [[noreturn]] void fail(const std::string& what) const;

  std::string string() const;
  std::string leafValue() const;  // a string, an integer or a boolean, as a leaf stores it
  std::int32_t integer() const;
  std::int32_t integerFrom(std::int32_t least) const;
  bool boolean() const;
  bool isNull() const;

  // For an object. allowOnly() refuses all other members.
  void requireObject() const;
  void allowOnly(std::initializer_list<const char*> names) const;
  std::optional<JsonValue> member(const char* name) const;
  JsonValue required(const char* name) const;
  bool booleanOr(const char* name, bool missing) const;
  void eachMember(const std::function<void(const std::string& name, const JsonValue& value)>& read) const;

  // For an array.
  void eachElement(const std::function<void(const JsonValue& value)>& read) const;

 private:
  void require(bool fits, const std::string& what) const;
  JsonValue inside(const nlohmann::json& value) const { return JsonValue(value, root_, source_); }

  const nlohmann::json& value_;
  const nlohmann::json& root_;  // the whole document
  const std::string& source_;
};

}  // namespace host

#endif
