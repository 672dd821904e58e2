// SPDX-License-Identifier: MIT
#include "host/start/configuration_file.h"

#include <malloc.h>

#include "host/config/object_reader.h"
#include "host/json/document.h"

namespace host {
namespace {

std::chrono::milliseconds readHeartbeat(const JsonValue& json) {
  json.allowOnly({"limitMs"});
  return std::chrono::milliseconds(json.required("limitMs").integerFrom(1));
}

}  // namespace

Configuration parseConfiguration(const std::string& text, const std::string& source) {
  const JsonDocument document(text, source);
  const JsonValue json = document.root();
  json.allowOnly({"heartbeat", "modules", "objects"});
  Configuration configuration;
  if (const auto heartbeat = json.member("heartbeat")) {
    configuration.heartbeat_limit = readHeartbeat(*heartbeat);
  }
  if (const auto modules = json.member("modules")) {
    modules->eachElement([&](const JsonValue& module) { configuration.modules.push_back(module.string()); });
  }
  if (const auto objects = json.member("objects")) configuration.objects = readObjects(*objects);
  return configuration;
}

Configuration readConfiguration(const std::string& file) {
  Configuration configuration = parseConfiguration(readFile(file), file);
  malloc_trim(0);  // the document took several times the memory of the configuration
  return configuration;
}

}  // namespace host
