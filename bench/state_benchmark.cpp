// SPDX-License-Identifier: MIT
// Measures the cost of saved state: restoring it at start, and saving one leaf.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "binding/context.h"
#include "host/config/config_service.h"
#include "host/heartbeat/heartbeat.h"
#include "host/registration/registry.h"
#include "host/state/state_file.h"
#include "include_c"

using namespace host;

namespace {

constexpr int kLeavesPerInstance = 100;

class SilentLog final : public ILog {
 public:
  int record(std::string, int, const char*) override { return 0; }
};

std::string instanceName(int i) {
  return "Device.Rows." + std::to_string(i) + '.';
}

std::string leafName(int i) {
  return "Leaf" + std::to_string(i);
}

std::vector<Object> objects(int leaves) {
  std::vector<Object> objects(1);
  Object& object = objects.front();
  object.number = 1;
  object.name = "Device.Rows.";
  std::vector<Leaf> declared;
  for (int i = 0; i < kLeavesPerInstance; i++) declared.push_back({leafName(i), findValueType("str"), ""});
  object.leaves = Leaves(std::move(declared));
  for (int i = 0; i < leaves / kLeavesPerInstance; i++) {
    object.instances.emplace(instanceName(i), Instance{instanceName(i), object.leaves.defaultValues()});
  }
  return objects;
}

// A state file that contains a value for every leaf.
class FullState {
 public:
  explicit FullState(int leaves) : leaves_(leaves) {
    if (mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("cannot create a temporary folder");
    StateFile state(file(), "benchmark", log_);
    ConfigService config = openConfig(state);
    for (int i = 0; i < leaves; i++) {
      config.setValue(instanceName(i / kLeavesPerInstance) + leafName(i % kLeavesPerInstance),
                      "value " + std::to_string(i), 0);
    }
    if (config.save(1) != C_RESULT_OK) throw std::runtime_error("cannot save");
  }
  ~FullState() { std::filesystem::remove_all(folder_); }
  FullState(const FullState&) = delete;
  FullState& operator=(const FullState&) = delete;

  std::string file() const { return folder_ + "/state.db"; }
  Tree tree() const { return Tree(objects(leaves_)); }
  ILog& log() { return log_; }

  ConfigService openConfig(StateFile& state) {
    Tree restored = tree();
    state.restore(restored);
    return ConfigService(std::move(restored), registry_, [&state](Tree& changed, const Changes& changes) {
      return state.save(changed, changes);
    });
  }

 private:
  const int leaves_;
  std::string folder_ = std::filesystem::temp_directory_path() / "cpp2c-bench-XXXXXX";
  SilentLog log_;
  Heartbeat heartbeat_{log_, std::chrono::hours(1)};
  Registry registry_{heartbeat_};
};

void start(benchmark::State& run) {
  FullState full(static_cast<int>(run.range(0)));
  for (auto _ : run) {
    run.PauseTiming();
    Tree tree = full.tree();
    run.ResumeTiming();
    StateFile state(full.file(), "benchmark", full.log());
    state.restore(tree);
    if (tree.find("Device.Rows.0.Leaf1")->value() != "value 1")
      run.SkipWithError("the state was not restored");
  }
}

void saveOneLeaf(benchmark::State& run) {
  FullState full(static_cast<int>(run.range(0)));
  StateFile state(full.file(), "benchmark", full.log());
  ConfigService config = full.openConfig(state);
  int value = 0;
  for (auto _ : run) {
    config.setValue("Device.Rows.0.Leaf1", std::to_string(++value), 0);
    if (config.save(1) != C_RESULT_OK) run.SkipWithError("cannot save");
  }
}

BENCHMARK(start)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveOneLeaf)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
