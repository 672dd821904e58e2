// SPDX-License-Identifier: MIT
#include "contextctl/leaves/leaf_file.h"

#include <algorithm>
#include <limits>
#include <set>
#include <string_view>

#include "contextctl/system/failure.h"
#include "contextctl/system/files.h"
#include "contextctl/system/json.h"
#include "util/text.h"

namespace contextctl {
namespace {

using Json = nlohmann::json;

constexpr size_t kLargestFile = 64;  // in MiB
constexpr const char* kLeafForm = R"({"type": "...", "value": "..."})";

[[noreturn]] void fail(const std::string& source, const std::string& reason) {
  throw Failure(kExitNoAnswer, source + ": " + reason);
}

// "LINE:COLUMN" of a byte, all counted from 1.
std::string positionOf(std::string_view text, size_t byte) {
  const std::string_view before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const size_t last_line_feed = before.rfind('\n');
  const size_t line_start = last_line_feed == std::string_view::npos ? 0 : last_line_feed + 1;
  return std::to_string(lines + 1) + ':' + std::to_string(before.size() - line_start + 1);
}

bool isLeaf(const Json& json) {
  return json.is_object() && json.size() == 2 && json.contains("type") && json["type"].is_string() &&
         json.contains("value") && json["value"].is_string();
}

// `keys` receives the keys of the object in the order of the text.
Json parse(const std::string& text, const std::string& source, std::vector<std::string>& keys) {
  JsonLimits limits(std::numeric_limits<size_t>::max());
  const auto count = [&](int depth, Json::parse_event_t event, const Json& value) {
    limits.count(depth, event);
    if (event == Json::parse_event_t::key && depth == 1) keys.push_back(value);
    return true;
  };
  try {
    return Json::parse(text, count);
  } catch (const JsonTooLarge& error) {
    fail(source, std::string("it ") + error.what());
  } catch (const Json::parse_error& error) {
    fail(source + ':' + positionOf(text, error.byte), "not valid JSON");
  } catch (const Json::out_of_range&) {
    fail(source, "a number is out of range");
  }
}

}  // namespace

std::string formatLeaves(const std::vector<Leaf>& leaves) {
  Json tree = Json::object();
  for (const Leaf& leaf : leaves) tree[leaf.name] = {{"type", leaf.type}, {"value", leaf.value.value_or("")}};
  return printableJson(tree.dump(2)) + '\n';
}

std::vector<Leaf> parseLeaves(const std::string& text, const std::string& source) {
  std::vector<std::string> names;
  const Json tree = parse(text, source, names);
  if (!tree.is_object()) fail(source, std::string("not an object of leaves: {\"NAME\": ") + kLeafForm + '}');
  std::vector<Leaf> leaves;
  std::set<std::string> seen;
  for (const std::string& name : names) {
    const Json& leaf = tree[name];
    if (!isLeaf(leaf)) fail(source, util::quoted(name) + " is not of the form " + kLeafForm);
    if (!seen.insert(name).second) continue;
    leaves.push_back({name, leaf["type"], leaf["value"].get<std::string>(), false});
  }
  return leaves;
}

std::vector<Leaf> readLeafFile(const std::string& path) {
  if (path == "-") return parseLeaves(readStandardInput(kLargestFile), "standard input");
  return parseLeaves(readFile(path, kLargestFile), path);
}

}  // namespace contextctl
