// SPDX-License-Identifier: MIT
#include "contextctl/connection/message.h"

#include <nlohmann/json.hpp>

#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void failAnswer(const std::string& reason) {
  throw Failure(kExitNoAnswer, "the context's answer cannot be understood: " + reason);
}

Json parseObject(const std::string& text) {
  Json json = Json::parse(text, nullptr, false);
  if (!json.is_object()) failAnswer("no JSON object");
  return json;
}

std::optional<std::string> plainText(const Json& value) {
  if (value.is_null()) return std::nullopt;
  return value.is_string() ? value.get<std::string>() : value.dump();
}

Record readRecord(const Json& object) {
  Record record;
  for (const auto& member : object.items())
    if (member.value().is_primitive()) record.set(member.key(), plainText(member.value()));
  return record;
}

void readArray(const std::string& name, const Json& array, Answer& answer) {
  std::vector<Record>& list = answer.lists[name];
  std::vector<std::string>& names = answer.names[name];
  for (const Json& item : array) {
    if (item.is_object()) list.push_back(readRecord(item));
    if (item.is_string()) names.push_back(item);
  }
}

std::string lineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json toJson(const Members& members) {
  Json object = Json::object();
  for (const auto& [name, value] : members)
    std::visit([&, &key = name](const auto& plain) { object[key] = plain; }, value);
  return object;
}

std::string strictLine(const Json& json) {
  try {
    return json.dump();
  } catch (const Json::type_error&) {
    throw Failure(kExitUsage, "a name or value is not UTF-8 text");
  }
}

template <typename T>
const T& find(const std::map<std::string, T>& all, const std::string& name) {
  const auto found = all.find(name);
  if (found == all.end()) failAnswer("no \"" + name + '"');
  return found->second;
}

}  // namespace

const std::optional<std::string>& Record::value(const std::string& name) const {
  return find(members_, name);
}

double Record::number(const std::string& name) const {
  const Json json = Json::parse(text(name), nullptr, false);
  if (!json.is_number()) failAnswer('"' + name + "\" is no number");
  return json;
}

const std::vector<Record>& Answer::list(const std::string& name) const {
  return find(lists, name);
}

const std::vector<std::string>& Answer::nameList(const std::string& name) const {
  return find(names, name);
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
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_object() || !json.contains("error") || !json["error"].is_string()) return std::nullopt;
  return json["error"].get<std::string>();
}

std::string writeObject(const Members& members) {
  return strictLine(toJson(members));
}

std::string writeList(const std::string& name, const std::vector<Members>& items) {
  Json list = Json::array();
  for (const Members& item : items) list.push_back(toJson(item));
  return strictLine(Json{{name, list}});
}

}  // namespace contextctl
