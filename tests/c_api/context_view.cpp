// SPDX-License-Identifier: MIT
#include "tests/c_api/context_view.h"

#include <cstring>
#include <string>

#include "boot/boot_context.h"
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

int context_fire_timer(int value) {
  return contextProxy().context.timers.back()->timeArrive(value);
}

const char* context_ask_provider(int id, const char* instance, const char* leaf) {
  static std::string answer;
  answer = contextProxy().context.cfm.providers.back()->dataGet(id, instance, leaf);
  return answer.c_str();
}

void* context_master_observer() {
  const auto& observers = contextProxy().context.master_observers;
  return observers.empty() ? nullptr : observers.back();
}

int drive_lifecycle(void* participant) {
  auto* boot = static_cast<IBootContext*>(participant);
  return boot->onLoad() + boot->onStart() + boot->onConfig("cfmd", 1) + boot->onRun() +
         boot->recvDependence("net") + boot->onUnconfig("cfmd", 2) + boot->onStop() + boot->onUnload();
}
