// SPDX-License-Identifier: MIT
// Measures what a service pays for the C functions on the host context. Needs the host context in
// LD_LIBRARY_PATH, see scripts/bench.
#include <benchmark/benchmark.h>

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/service.h"
#include "cpp2c_host.h"
#include "include_c"

using namespace bench;

namespace {

// The names of leaves in an order without pattern, the same in every run.
std::vector<std::string> shuffledNames(int leaves) {
  std::vector<std::string> names;
  for (int i = 0; i < leaves; i++) names.push_back(leafName(i));
  std::shuffle(names.begin(), names.end(), std::mt19937(1));
  return names;
}

void read(benchmark::State& state) {
  const auto leaves = static_cast<int>(state.range(0));
  const Service service(leaves);
  const auto names = shuffledNames(leaves);
  std::size_t next = 0;
  std::int32_t value = 0;
  for (auto _ : state) {
    c_cfm_get_value(names[next].c_str(), "int", &value, sizeof value);
    benchmark::DoNotOptimize(value);
    if (++next == names.size()) next = 0;
  }
}

void writeAll(benchmark::State& state, const std::vector<std::string>& names) {
  std::size_t next = 0;
  std::int32_t value = 1000000;
  for (auto _ : state) {
    c_cfm_set_value(names[next].c_str(), 0, "int", &value, sizeof value);
    value++;
    if (++next == names.size()) next = 0;
  }
}

void write(benchmark::State& state) {
  const auto leaves = static_cast<int>(state.range(0));
  const Service service(leaves);
  writeAll(state, shuffledNames(leaves));
}

int countChange(void* count, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  ++*static_cast<std::int64_t*>(count);
  return 0;
}

void observedWrite(benchmark::State& state) {
  const auto leaves = static_cast<int>(state.range(0));
  const Service service(leaves);
  std::int64_t count = 0;
  c_cfm_regist_observer(kRows, countChange, &count);
  writeAll(state, shuffledNames(leaves));
  if (count < static_cast<std::int64_t>(state.iterations()))
    state.SkipWithError("the observer was not called");
}

int countEvent(void* count, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  ++*static_cast<std::int64_t*>(count);
  return 0;
}

void event(benchmark::State& state) {
  const Service service(64);
  std::int64_t count = 0;
  for (int i = 0; i < state.range(0); i++) c_event_regist_observer("link.down", countEvent, &count);
  for (auto _ : state) c_event_notify("link.down", "eth0");
  if (count < static_cast<std::int64_t>(state.iterations())) state.SkipWithError("no observer was called");
}

void eventAmongOtherTopics(benchmark::State& state) {
  const Service service(64);
  std::int64_t count = 0;
  for (int i = 0; i < state.range(0); i++) {
    c_event_regist_observer(("other" + std::to_string(i)).c_str(), countEvent, &count);
  }
  c_event_regist_observer("link.down", countEvent, &count);
  for (auto _ : state) c_event_notify("link.down", "eth0");
}

int visit(int /*id*/, char* name, void* /*userdata*/, c_pass_fn3 /*fn3*/, c_pass_fn4 /*fn4*/, void* arg) {
  *static_cast<std::size_t*>(arg) += static_cast<unsigned char>(name[0]);
  return 0;
}

void liveWalk(benchmark::State& state) {
  const Service service(64 * kLeavesPerRow);
  std::size_t sum = 0;
  for (auto _ : state) c_cfm_lookup_instance(kRows, visit, nullptr, nullptr, &sum);
  if (sum == 0) state.SkipWithError("no instance was visited");
}

void cacheWalk(benchmark::State& state) {
  c_dbc_create();
  for (int i = 0; i < 64; i++) c_dbc_add_userdata(kRows, rowName(i).c_str(), nullptr);
  std::size_t sum = 0;
  for (auto _ : state) c_dbc_lookup(kRows, visit, nullptr, nullptr, &sum);
  if (sum == 0) state.SkipWithError("no name was visited");
  c_dbc_db_destory();
}

void computeNow(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* handle) {
  std::int32_t now = 42;
  c_cfm_data_provider_set(handle, "int", reinterpret_cast<char*>(&now));
}

void computedRead(benchmark::State& state) {
  const Service service(64);
  c_cfm_data_provider_regist(kComputed, computeNow, nullptr);
  std::int32_t value = 0;
  for (auto _ : state) c_cfm_get_value("Device.Now", "int", &value, sizeof value);
  if (value != 42) state.SkipWithError("the provider was not asked");
}

struct Wake {
  int fd;
  std::int64_t left;
};

void makeReady(int fd) {
  if (eventfd_write(fd, 1) != 0) std::abort();
}

void onWake(void* user, short /*events*/, int fd) {
  auto* wake = static_cast<Wake*>(user);
  eventfd_t value = 0;
  if (eventfd_read(fd, &value) != 0) std::abort();
  if (--wake->left > 0) {
    makeReady(fd);
  } else {
    std::raise(SIGTERM);
  }
}

// One turn of the loop for each call: the callback makes its own descriptor ready again.
void descriptorCall(benchmark::State& state) {
  const Service service(64);
  c_context_set_timer(3600000, 0, [] { return 0; });  // as in most services
  constexpr std::int64_t kCalls = 10000;
  Wake wake{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), 0};
  c_loop_add_fd(wake.fd, C_LOOP_READ, onWake, &wake);
  while (state.KeepRunningBatch(kCalls)) {
    wake.left = kCalls;
    makeReady(wake.fd);
    c_loop_run();
  }
  close(wake.fd);
}

// A leaf that does not exist, in strict mode.
void strictUnknownLeaf(benchmark::State& state) {
  const Service service(static_cast<int>(state.range(0)), "--strict");
  std::int32_t value = 0;
  for (auto _ : state) c_cfm_get_value("Device.Rows.1.Leaf64", "int", &value, sizeof value);
}

void load(benchmark::State& state) {
  const Service service(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    c_context_deinit();
    service.start();
  }
}

}  // namespace

BENCHMARK(read)->Arg(64)->Arg(10000)->Arg(100000);
BENCHMARK(write)->Arg(64)->Arg(10000)->Arg(100000);
BENCHMARK(observedWrite)->Arg(64)->Arg(10000)->Arg(100000);
BENCHMARK(event)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(eventAmongOtherTopics)->Arg(10000);
BENCHMARK(liveWalk);
BENCHMARK(cacheWalk);
BENCHMARK(computedRead);
BENCHMARK(descriptorCall);
BENCHMARK(strictUnknownLeaf)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(load)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
