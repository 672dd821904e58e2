// SPDX-License-Identifier: MIT
// Any sequence of C calls and callbacks, also of calls within callbacks: the library calls the context and
// the callbacks as a model does, returns the same results, and leaks and overruns nothing.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/calls/bridge.h"
#include "fuzz/calls/cache.h"
#include "fuzz/calls/events.h"
#include "fuzz/calls/loop.h"
#include "fuzz/calls/observers.h"
#include "fuzz/calls/participants.h"
#include "fuzz/calls/providers.h"
#include "fuzz/calls/utilities.h"
#include "fuzz/harness.h"

namespace {

class Program {
 public:
  explicit Program(Input& input) : bridge_(input) {
    bridge_.step = [this] { step(); };
  }

  void run() {
    while (!bridge_.input.empty()) step();
  }

 private:
  // Takes one step. Inputs contain the numbers of steps: append new steps at the end.
  void step() {
    using Step = void (*)(Program & program);
    static constexpr Step kSteps[] = {
        [](Program& program) { program.init(); },
        [](Program& program) { program.deinit(); },
        [](Program& program) { program.obtain(); },
        [](Program& program) { program.release(); },
        [](Program& program) { program.changeServices(); },
        [](Program& program) { program.changeInstance(); },
        [](Program& program) { program.utilities_.forward(); },
        [](Program& program) { program.utilities_.switchDebugging(); },
        [](Program& program) { program.utilities_.writeDiagnostic(); },
        [](Program& program) { program.utilities_.runCommand(); },
        [](Program& program) { program.utilities_.runCommandForResult(); },
        [](Program& program) { program.utilities_.readCommand(); },
        [](Program& program) { program.utilities_.writeRecord(); },
        [](Program& program) { program.utilities_.allocate(); },
        [](Program& program) { program.utilities_.setAttribute(); },
        [](Program& program) { program.utilities_.getAttribute(); },
        [](Program& program) { program.utilities_.increase(); },
        [](Program& program) { program.utilities_.decrease(); },
        [](Program& program) { program.cache_.create(); },
        [](Program& program) { program.cache_.add(); },
        [](Program& program) { program.cache_.get(); },
        [](Program& program) { program.cache_.release(); },
        [](Program& program) { program.cache_.releaseAll(); },
        [](Program& program) { program.cache_.destroy(); },
        [](Program& program) { program.cache_.lookup(); },
        [](Program& program) { program.observers_.add(); },
        [](Program& program) { program.observers_.remove(); },
        [](Program& program) { program.observers_.find(); },
        [](Program& program) { program.observers_.deliver(); },
        [](Program& program) { program.observers_.lookup(); },
        [](Program& program) { program.observers_.changeInstances(); },
        [](Program& program) { program.events_.add(); },
        [](Program& program) { program.events_.remove(); },
        [](Program& program) { program.events_.notify(); },
        [](Program& program) { program.events_.deliver(); },
        [](Program& program) { program.events_.deliverToRemoved(); },
        [](Program& program) { program.loop_.add(); },
        [](Program& program) { program.loop_.remove(); },
        [](Program& program) { program.loop_.becomeReady(); },
        [](Program& program) { program.loop_.setTimer(); },
        [](Program& program) { program.loop_.expire(); },
        [](Program& program) { program.providers_.add(); },
        [](Program& program) { program.providers_.request(); },
        [](Program& program) { program.participants_.addModule(); },
        [](Program& program) { program.participants_.removeModule(); },
        [](Program& program) { program.participants_.stepModule(); },
        [](Program& program) { program.participants_.setMaster(); },
        [](Program& program) { program.participants_.changeTable(); },
        [](Program& program) { program.participants_.notify(); },
        [](Program& program) { program.participants_.stepMaster(); },
    };
    bridge_.input.oneOf(kSteps)(*this);
  }

  void init() {
    const unsigned int arg1 = bridge_.input.below(256);
    const unsigned int arg2 = bridge_.input.below(256);
    const Bridge::Scope scope(bridge_, "c_context_init()");
    int result = C_RESULT_NOT_INIT;
    if (bridge_.reach()) {
      result = bridge_.expectResult("context.init", std::to_string(arg1) + ", " + std::to_string(arg2));
    } else {
      bridge_.diagnose("NOT INITED! ERROR!");
    }
    requireEqual(c_context_init(arg1, arg2), result, "result of c_context_init()");
    cache_.createInModel();
  }

  // No callback may end the use of the framework.
  void deinit() {
    if (bridge_.isNested()) return;
    const Bridge::Scope scope(bridge_, "c_context_deinit()");
    expectRelease();
    c_context_deinit();
    cache_.destroyInModel();
    observers_.clearInModel();
    events_.clearInModel();
    loop_.clearInModel();
    providers_.clearInModel();
    participants_.clearInModel();
  }

  void obtain() {
    const Bridge::Scope scope(bridge_, "getContext()");
    IContext* context = bridge_.reach() ? &bridge_.proxy.context : nullptr;
    require(getContext() == context, "the library returns the context library's instance");
  }

  void release() {
    if (bridge_.isNested()) return;
    const Bridge::Scope scope(bridge_, "releaseContext()");
    expectRelease();
    releaseContext(nullptr);
  }

  void expectRelease() {
    if (bridge_.opened) bridge_.expect(bridge_.obtained ? "relInstance(object)" : "relInstance(null)");
    bridge_.opened = false;
    bridge_.obtained = false;
  }

  void changeServices() {
    static const char* const kGetters[] = {"getCfm", "getEvent", "getLoop", "getHeartbeat", "getLog"};
    const std::string getter = bridge_.input.oneOf(kGetters);
    if (bridge_.proxy.context.missing.erase(getter) == 0) bridge_.proxy.context.missing.insert(getter);
  }

  // The context library has an instance or not. This matters only while the library has no context.
  void changeInstance() {
    bridge_.proxy.instance = bridge_.proxy.instance == nullptr ? &bridge_.proxy.context : nullptr;
  }

  Bridge bridge_;
  Utilities utilities_{bridge_};
  Cache cache_{bridge_};
  Observers observers_{bridge_, cache_};
  Events events_{bridge_};
  Loop loop_{bridge_};
  Providers providers_{bridge_};
  Participants participants_{bridge_};
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Program(input).run();
  return 0;
}
