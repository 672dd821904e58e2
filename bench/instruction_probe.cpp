// SPDX-License-Identifier: MIT
// Makes one kind of call so many times, for a tool that counts instructions, see scripts/instructions.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/service.h"
#include "cpp2c_host.h"
#include "include_c"

using namespace bench;

namespace {

const std::string kLeaf = leafName(kLeavesPerRow + 7);

void readLeaf(int count) {
  std::int32_t value = 0;
  for (int i = 0; i < count; i++) c_cfm_get_value(kLeaf.c_str(), "int", &value, sizeof value);
}

void writeLeaf(int count) {
  for (std::int32_t i = 0; i < count; i++) c_cfm_set_value(kLeaf.c_str(), 0, "int", &i, sizeof i);
}

int onChange(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

void writeObservedLeaf(int count) {
  c_cfm_regist_observer(kRows, onChange, nullptr);
  writeLeaf(count);
}

int onEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

void notify(int count, int observers) {
  for (int i = 0; i < observers; i++) c_event_regist_observer("link.down", onEvent, nullptr);
  for (int i = 0; i < count; i++) c_event_notify("link.down", "eth0");
}

void notifyOne(int count) {
  notify(count, 1);
}

void notifyEight(int count) {
  notify(count, 8);
}

int visit(int /*id*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*fn3*/, c_pass_fn4 /*fn4*/,
          void* /*arg*/) {
  return 0;
}

void walkInstances(int count) {
  for (int i = 0; i < count; i++) c_cfm_lookup_instance(kRows, visit, nullptr, nullptr, nullptr);
}

void walkCache(int count) {
  for (int i = 0; i < 64; i++) c_dbc_add_userdata(kRows, rowName(i).c_str(), nullptr);
  for (int i = 0; i < count; i++) c_dbc_lookup(kRows, visit, nullptr, nullptr, nullptr);
}

void compute(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* handle) {
  std::int32_t now = 42;
  c_cfm_data_provider_set(handle, "int", reinterpret_cast<char*>(&now));
}

void readComputedLeaf(int count) {
  c_cfm_data_provider_regist(kComputed, compute, nullptr);
  std::int32_t value = 0;
  for (int i = 0; i < count; i++) c_cfm_get_value("Device.Now", "int", &value, sizeof value);
}

void parentName(int count) {
  char name[64];
  for (int i = 0; i < count; i++) c_cfm_get_parent_name(kLeaf.c_str(), name, sizeof name);
}

struct Call {
  const char* name;
  void (*make)(int count);
};

constexpr Call kCalls[] = {
    {"read", readLeaf},
    {"write", writeLeaf},
    {"observed-write", writeObservedLeaf},
    {"event-1", notifyOne},
    {"event-8", notifyEight},
    {"walk-64", walkInstances},
    {"cache-walk-64", walkCache},
    {"computed-read", readComputedLeaf},
    {"parent-name", parentName},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "Usage: %s CALL COUNT LEAVES\n", argv[0]);
    return 2;
  }
  const Service service(std::atoi(argv[3]));
  for (const Call& call : kCalls) {
    if (std::strcmp(call.name, argv[1]) != 0) continue;
    call.make(std::atoi(argv[2]));
    return 0;
  }
  std::fprintf(stderr, "%s: unknown call '%s'\n", argv[0], argv[1]);
  return 2;
}
