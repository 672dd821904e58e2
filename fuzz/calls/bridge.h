// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_BRIDGE_H
#define CPP2C_FUZZ_CALLS_BRIDGE_H

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/expect.h"
#include "fuzz/harness.h"
#include "fuzz/input.h"
#include "fuzz/recording_session.h"

inline std::string shown(const void* pointer) {
  return std::to_string(reinterpret_cast<std::uintptr_t>(pointer));
}

// Joins the parts of a call's description.
template <typename... Parts>
std::string described(const Parts&... parts) {
  std::string text;
  for (const std::string& part : {shown(parts)...}) text += (text.empty() ? "" : " ") + part;
  return text;
}

// Both sides of the library, and a model of how the library obtains the context.
//
// A step predicts the context's calls, then calls a C function or a callback. The first call that differs
// ends the process. A callback takes further steps.
class Bridge {
 public:
  explicit Bridge(Input& choices) : input(choices), proxy(session.proxy) {
    current = this;
    proxy.calls.on_call = [this](const std::string& call) { check(call); };
  }
  ~Bridge() { current = nullptr; }
  Bridge(const Bridge&) = delete;
  Bridge& operator=(const Bridge&) = delete;

  static inline Bridge* current = nullptr;  // for the callbacks, which are plain functions

  Input& input;
  RecordingSession session;
  ContextProxy& proxy;
  std::function<void()> step;  // takes one step
  bool opened = true;          // the context library
  bool obtained = true;        // the context
  int users[3] = {};           // their addresses are the user pointers

  void* anyUser() { return &users[input.below(3)]; }

  // The calls that the context receives until the end of the scope.
  class Scope {
   public:
    Scope(Bridge& bridge, std::string function) : bridge_(bridge) {
      bridge_.expected_.push_back({std::move(function), {}});
    }
    ~Scope() {
      const Expected& expected = bridge_.expected_.back();
      requireEqual(Calls(), Calls(expected.calls.begin(), expected.calls.end()),
                   "the end of the calls of the context by " + expected.function);
      bridge_.expected_.pop_back();
      bridge_.proxy.calls.take();
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    Bridge& bridge_;
  };

  void expect(const std::string& call) { expected_.back().calls.push_back(call); }

  // Predicts an attempt to get the context. Returns whether there is one.
  bool reach() {
    opened = true;
    if (!obtained) expect("getInstance(null)");
    obtained = obtained || proxy.instance != nullptr;
    return obtained;
  }

  // Predicts the getter of a service of the context, which has been reached. Returns whether there is one.
  bool get(const std::string& getter) {
    expect("context." + getter + "()");
    return proxy.context.missing.count(getter) == 0;
  }

  bool reachService(const std::string& getter) { return reach() && get(getter); }

  void diagnose(const std::string& text) {
    if (reach()) expect(diagnostic(text.substr(0, 1022)));
  }

  // Predicts a call and chooses its result.
  int expectResult(const std::string& operation, const std::string& arguments) {
    expect(operation + "(" + arguments + ")");
    return proxy.calls.results[operation] = input.word();
  }

  // Calls what must call exactly the given callback. Returns the result of `call`.
  template <typename Call>
  auto expectCallback(const std::string& callback, const Call& call) {
    awaited_ = callback;
    auto result = call();
    requireEqual(std::string(), awaited_, "the callback that is still to be called");
    return result;
  }

  // To be called by each callback. Returns the callback's result, which is also result().
  int called(const std::string& callback) {
    requireEqual(callback, awaited_, "the callback");
    awaited_.clear();
    nest();
    return result_ = input.word();
  }
  int result() const { return result_; }

  // Takes steps within a callback.
  void nest() {
    constexpr int kDeepest = 3;
    if (depth_ == kDeepest) return;
    depth_++;
    for (unsigned int steps = input.below(3); steps > 0; steps--) step();
    depth_--;
  }
  bool isNested() const { return depth_ > 0; }

 private:
  struct Expected {
    std::string function;
    std::deque<std::string> calls;
  };

  void check(const std::string& call) {
    require(!expected_.empty(), "the context is called only by the function under test");
    Expected& expected = expected_.back();
    requireEqual(call, expected.calls.empty() ? "no call" : expected.calls.front(),
                 "a call of the context by " + expected.function);
    expected.calls.pop_front();
  }

  std::vector<Expected> expected_;
  std::string awaited_;  // description of the callback to be called next
  int depth_ = 0;        // of nested callbacks
  int result_ = 0;
};

constexpr const char* kNames[] = {"a", "b", "ab", "A", "A.1.", ""};
constexpr int kIds[] = {0, 5, -7};

#endif
