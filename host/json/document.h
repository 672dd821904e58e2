// SPDX-License-Identifier: MIT
// JSON input and output: files, request bodies, responses.
#ifndef CPP2C_HOST_JSON_DOCUMENT_H
#define CPP2C_HOST_JSON_DOCUMENT_H

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/json/value.h"

namespace host {

// A parsed JSON text.
class JsonDocument {
 public:
  // `source` names the text in messages. Throws util::Error with C_RESULT_PARAM for a text that is not JSON,
  // has a duplicate key or is nested more than 16 deep.
  JsonDocument(const std::string& text, std::string source);
  JsonDocument(JsonDocument&&) = delete;
  ~JsonDocument();

  JsonValue root() const { return JsonValue(*root_, *root_, source_); }

 private:
  const std::string source_;
  std::unique_ptr<nlohmann::json> root_;
};

// The whole file. Throws util::Error with C_RESULT_SYSTEM_CALL if it cannot be read, and with C_RESULT_PARAM
// if it is larger than 256 MiB, as a device without end is.
std::string readFile(const std::string& name);

// A member of a JSON object: its name, and its value as JSON text.
using MemberText = std::pair<const char*, std::string>;

// A JSON object in one line, with its members in the order of their names.
std::string objectText(std::vector<MemberText> members);

// The value in one line. Must not be an array or an object with members: nlohmann::json allocates memory to
// destroy one, and ends the process if there is none. JSON has no place for bytes that are not UTF-8: they
// are replaced by U+FFFD.
std::string lineOf(const nlohmann::json& value);

}  // namespace host

#endif
