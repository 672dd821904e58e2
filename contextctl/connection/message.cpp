// SPDX-License-Identifier: MIT
#include "contextctl/connection/message.h"

#include <cmath>
#include <cstdlib>

#include "contextctl/system/failure.h"
#include "contextctl/system/json.h"
#include "util/text.h"

namespace contextctl {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void failAnswer(const std::string& reason) {
  throw Failure(kExitNoAnswer, "invalid answer from the context: " + reason);
}

// Returns a discarded value if the text is not JSON. Throws JsonTooLarge.
Json parse(const std::string& text) {
  constexpr size_t kMostMembers = 1000;  // an object compares each key with all others
  JsonLimits limits(kMostMembers);
  const auto count = [&](int depth, Json::parse_event_t event, const Json&) {
    limits.count(depth, event);
    return true;
  };
  return Json::parse(text, count, false);
}

Json parseObject(const std::string& text) {
  try {
    Json json = parse(text);
    if (!json.is_object()) failAnswer("not a JSON object");
    return json;
  } catch (const JsonTooLarge& error) {
    failAnswer(std::string("it ") + error.what());
  }
}

std::optional<std::string> textOf(const Json& value) {
  if (value.is_null()) return std::nullopt;
  return value.is_string() ? value.get<std::string>() : value.dump();
}

Record readRecord(const Json& object) {
  Record record;
  for (const auto& member : object.items())
    if (member.value().is_primitive()) record.set(member.key(), textOf(member.value()));
  return record;
}

void readArray(const std::string& name, const Json& array, Answer& answer) {
  std::vector<Record>& objects = answer.objects[name];
  std::vector<std::string>& strings = answer.strings[name];
  for (const Json& item : array) {
    if (item.is_object()) objects.push_back(readRecord(item));
    if (item.is_string()) strings.push_back(item);
  }
}

std::string lineOf(const Json& json) {
  return printableJson(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

Json toJson(const Members& members) {
  Json object = Json::object();
  for (const auto& [name, value] : members)
    std::visit([&, &key = name](const auto& plain) { object[key] = plain; }, value);
  return object;
}

std::string utf8Line(const Json& json) {
  try {
    return printableJson(json.dump());
  } catch (const Json::type_error&) {
    throw Failure(kExitUsage, "a name or value is not valid UTF-8");
  }
}

template <typename T>
const T& findMember(const std::map<std::string, T>& members, const std::string& name) {
  const auto found = members.find(name);
  if (found == members.end()) failAnswer("no member " + util::quoted(name));
  return found->second;
}

}  // namespace

const std::optional<std::string>& Record::value(const std::string& name) const {
  return findMember(members_, name);
}

double Record::number(const std::string& name) const {
  const std::string digits = text(name);
  char* end = nullptr;
  const double number = std::strtod(digits.c_str(), &end);
  if (digits.empty() || *end != '\0' || !std::isfinite(number))
    failAnswer(util::quoted(name) + " is not a number");
  return number;
}

const std::vector<Record>& Answer::objectArray(const std::string& name) const {
  return findMember(objects, name);
}

const std::vector<std::string>& Answer::stringArray(const std::string& name) const {
  return findMember(strings, name);
}

Answer readAnswer(const std::string& text) {
  const Json json = parseObject(text);
  Answer answer;
  answer.record = readRecord(json);
  for (const auto& member : json.items())
    if (member.value().is_array()) readArray(member.key(), member.value(), answer);
  answer.json = lineOf(json);
  return answer;
}

std::optional<std::string> readRefusal(const std::string& text) {
  try {
    const Json json = parse(text);
    if (!json.is_object() || !json.contains("error") || !json["error"].is_string()) return std::nullopt;
    return json["error"].get<std::string>();
  } catch (const JsonTooLarge&) {
    return std::nullopt;
  }
}

std::string writeObject(const Members& members) {
  return utf8Line(toJson(members));
}

std::string writeArray(const std::string& name, const std::vector<Members>& items) {
  Json array = Json::array();
  for (const Members& item : items) array.push_back(toJson(item));
  return utf8Line(Json{{name, array}});
}

}  // namespace contextctl
