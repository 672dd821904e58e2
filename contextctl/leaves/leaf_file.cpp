// SPDX-License-Identifier: MIT
#include "contextctl/leaves/leaf_file.h"

#include <nlohmann/json.hpp>

#include "contextctl/system/failure.h"
#include "contextctl/system/files.h"

namespace contextctl {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void fail(const std::string& source, const std::string& reason) {
  throw Failure(kExitNoAnswer, source + ": " + reason);
}

bool isLeaf(const Json& json) {
  return json.is_object() && json.size() == 2 && json.contains("type") && json["type"].is_string() &&
         json.contains("value") && json["value"].is_string();
}

Json parse(const std::string& text, const std::string& source) {
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    fail(source, "no JSON: error at byte " + std::to_string(error.byte));
  } catch (const Json::out_of_range&) {
    fail(source, "no JSON: a number is out of range");
  }
}

}  // namespace

std::string writeTree(const std::vector<Leaf>& leaves) {
  Json tree = Json::object();
  for (const Leaf& leaf : leaves) tree[leaf.name] = {{"type", leaf.type}, {"value", leaf.value.value_or("")}};
  return tree.dump(2) + '\n';
}

std::vector<Leaf> readTree(const std::string& text, const std::string& source) {
  const Json tree = parse(text, source);
  if (!tree.is_object()) fail(source, "no object of leaves");
  std::vector<Leaf> leaves;
  for (const auto& [name, leaf] : tree.items()) {
    if (!isLeaf(leaf)) fail(source, name + R"( is not of the form {"type": "...", "value": "..."})");
    leaves.push_back({name, leaf["type"], leaf["value"].get<std::string>(), false});
  }
  return leaves;
}

std::vector<Leaf> readTreeFile(const std::string& path) {
  if (path == "-") return readTree(readStandardInput(), "standard input");
  return readTree(readFile(path), path);
}

}  // namespace contextctl
