// SPDX-License-Identifier: MIT
#include "tests/c_api/context_view.h"

#include <cstring>
#include <string>

#include "boot/module.h"
#include "tests/support/context_proxy.h"

const char* context_calls() {
  static std::string lines;
  lines.clear();
  for (const std::string& call : contextProxy().calls.take()) lines += call + '\n';
  return lines.c_str();
}

void context_set_result(const char* operation, int result) {
  contextProxy().calls.results[operation] = result;
}

void context_set_leaf(const char* fullname, const char* type, const char* value) {
  const auto length = static_cast<unsigned int>(std::strlen(value));
  contextProxy().context.cfm.leaves[fullname] = {type, value, length};
}

void context_add_instance(int id, const char* name) {
  contextProxy().context.cfm.instances[id].push_back(name);
}

int context_fire_watch(short events, int value) {
  return contextProxy().context.loop.handlers.back()->handler(events, value);
}

int context_fire_event(const char* event, const char* data, const char* source) {
  return contextProxy().context.event.registered.back().observer->update(event, data, source);
}

int context_fire_change(int id, const char* instance, int operation, const char* leaf) {
  return contextProxy().context.cfm.registered.back().observer->update(id, instance, operation, leaf);
}

int drive_module(void* module) {
  auto* participant = static_cast<IModule*>(module);
  return participant->onLoad() + participant->onStart() + participant->onConfig("cfmd", 1) +
         participant->onRun() + participant->recvDependence("net") + participant->onUnconfig("cfmd", 2) +
         participant->onStop() + participant->onUnload();
}
