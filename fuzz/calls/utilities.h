// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_UTILITIES_H
#define CPP2C_FUZZ_CALLS_UTILITIES_H

#include <algorithm>
#include <map>
#include <string>

#include "fuzz/calls/bridge.h"

// The functions that register nothing.
class Utilities {
 public:
  explicit Utilities(Bridge& bridge) : bridge_(bridge) {
    const Bridge::Scope scope(bridge_, "reference_decrease()");
    bridge_.proxy.calls.on_call.swap(unchecked_);
    for (const char* name : kNames) {
      while (reference_decrease(name) > 0) {  // the counts survive c_context_deinit()
      }
    }
    bridge_.proxy.calls.on_call.swap(unchecked_);
  }

  void forward() {
    struct Function {
      int (*call)();
      const char* name;
      const char* getter;
      const char* operation;
      const char* arguments;
    };
    static constexpr Function kFunctions[] = {
        {c_context_load, "c_context_load()", nullptr, "context.load", ""},
        {c_loop_run, "c_loop_run()", "getLoop", "loop.run", ""},
        {c_heartbeat_lock, "c_heartbeat_lock()", "getHeartbeat", "heartbeat.lock", ""},
        {c_heartbeat_unlock, "c_heartbeat_unlock()", "getHeartbeat", "heartbeat.unlock", ""},
        {c_cfm_save_config, "c_cfm_save_config()", "getCfm", "cfm.save", "1"},
    };
    const Function& function = bridge_.input.oneOf(kFunctions);
    const Bridge::Scope scope(bridge_, function.name);
    const bool reached = bridge_.reach() && (function.getter == nullptr || bridge_.get(function.getter));
    const int result = reached ? bridge_.expectResult(function.operation, function.arguments) : 0;
    requireEqual(function.call(), result, "result of " + std::string(function.name));
  }

  void switchDebugging() {
    const int value = bridge_.input.word();
    const Bridge::Scope scope(bridge_, "c_context_debug_switch()");
    const int result =
        bridge_.reach() ? bridge_.expectResult("context.debugSwitch", std::to_string(value)) : 0;
    requireEqual(c_context_debug_switch(value), result, "result of c_context_debug_switch()");
  }

  void writeDiagnostic() {
    const std::string text = longText();
    const Bridge::Scope scope(bridge_, "c_debug_out()");
    int result = 0;
    if (bridge_.reach()) {
      result = bridge_.expectResult("context.debugOut", "null, '" + text.substr(0, 1022) + "'");
    }
    requireEqual(c_debug_out(nullptr, 7, "%s", text.c_str()), result, "result of c_debug_out()");
    bridge_.proxy.calls.results.erase("context.debugOut");
  }

  void runCommand() {
    const std::string text = longText();
    const std::string command = text.substr(0, 1022);
    const Bridge::Scope scope(bridge_, "c_system_call()");
    if (bridge_.reach()) bridge_.expect("context.systemCall('" + command + "')");
    requireEqual(c_system_call("%s", text.c_str()),
                 bridge_.obtained ? static_cast<int>(command.size()) + 6 : 0, "result of c_system_call()");
  }

  void runCommandForResult() {
    const std::string text = longText();
    char format[] = "%s";
    const Bridge::Scope scope(bridge_, "c_system_call2()");
    const int result = expectCommand("context.systemCall2", text, C_RESULT_SYSTEM_CALL);
    requireEqual(c_system_call2(format, text.c_str()), result, "result of c_system_call2()");
  }

  void readCommand() {
    const std::string text = longText();
    char format[] = "%s";
    const Bridge::Scope scope(bridge_, "c_popen_call()");
    const int result = expectCommand("context.popenCall", text, 0);
    requireEqual(c_popen_call(format, text.c_str()), result, "result of c_popen_call()");
  }

  void writeRecord() {
    const std::string module = bridge_.input.text();
    const int code = bridge_.input.word();
    const std::string text = longText();
    const Bridge::Scope scope(bridge_, "c_log_record()");
    if (bridge_.reachService("getLog")) {
      bridge_.expect("log.record('" + module + "', " + std::to_string(code) + ", '" + text.substr(0, 78) +
                     "')");
    }
    c_log_record(module.c_str(), code, "%s", text.c_str());
  }

  void allocate() {
    const unsigned int size = bridge_.input.below(256) * 16;
    const Bridge::Scope scope(bridge_, "c_malloc()");
    char* memory = c_malloc(size, nullptr, 0);
    require(size == 0 || std::string(memory, size) == std::string(size, '\0'), "allocated memory is zero");
    std::fill_n(memory, size, 'x');
    c_free(memory);
    c_free(nullptr);
  }

  void setAttribute() {
    const int node = bridge_.input.word();
    const int value = bridge_.input.word();
    const Bridge::Scope scope(bridge_, "c_cfm_set_attr()");
    int result = C_RESULT_NOT_INIT;
    if (bridge_.reachService("getCfm")) {
      result = bridge_.expectResult("cfm.setAttr", std::to_string(node) + ", " + std::to_string(value));
    } else {
      bridge_.diagnose("INIT ERROR!");
    }
    requireEqual(c_cfm_set_attr(node, value), result, "result of c_cfm_set_attr()");
  }

  void getAttribute() {
    const int node = bridge_.input.word();
    int place = 0;
    int* out = bridge_.input.below(4) == 0 ? nullptr : &place;
    const Bridge::Scope scope(bridge_, "c_cfm_get_attr()");
    int result = C_RESULT_PARAM;
    const bool reached = bridge_.reach() && out != nullptr && bridge_.get("getCfm");
    if (reached) {
      result = bridge_.expectResult("cfm.getAttr", std::to_string(node) + ", object");
    } else {
      bridge_.diagnose("PARAM ERROR!");
    }
    requireEqual(c_cfm_get_attr(node, out), result, "result of c_cfm_get_attr()");
    require(!reached || bridge_.proxy.context.cfm.attribute_places.back() == out, "the place is passed on");
  }

  void increase() {
    const char* name = bridge_.input.oneOf(kNames);
    const int count = ++counts_[name];
    const Bridge::Scope scope(bridge_, "reference_increase()");
    bridge_.diagnose("-----str=" + std::string(name) + ",count=" + std::to_string(count));
    requireEqual(reference_increase(name), count, "the count of " + shown(std::string(name)));
  }

  void decrease() {
    const char* name = bridge_.input.oneOf(kNames);
    const int count = counts_[name] = std::max(counts_[name] - 1, 0);
    const Bridge::Scope scope(bridge_, "reference_decrease()");
    bridge_.diagnose("-----str2=" + std::string(name) + ",count=" + std::to_string(count));
    requireEqual(reference_decrease(name), count, "the count of " + shown(std::string(name)));
  }

 private:
  // Up to 1275 bytes: longer than every buffer of the library.
  std::string longText() {
    const std::string part = bridge_.input.text();
    const std::string end = bridge_.input.text();
    std::string text;
    for (unsigned int repeats = bridge_.input.below(6); repeats > 0; repeats--) text += part;
    return text + end;
  }

  int expectCommand(const std::string& operation, const std::string& text, int without_context) {
    return bridge_.reach() ? bridge_.expectResult(operation, "'" + text.substr(0, 1022) + "'")
                           : without_context;
  }

  Bridge& bridge_;
  std::map<std::string, int> counts_;
  std::function<void(const std::string&)> unchecked_;
};

#endif
