// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_RECORDING_CONTEXT_H
#define CPP2C_TESTS_SUPPORT_RECORDING_CONTEXT_H

#include <set>
#include <string>
#include <vector>

#include "binding/context.h"
#include "binding/handlers.h"
#include "tests/support/call_log.h"
#include "tests/support/recording_cfm.h"
#include "tests/support/recording_event.h"
#include "tests/support/recording_heartbeat.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_loop.h"

// A context that records its calls and returns the results set in the log.
class RecordingContext : public IContext {
 private:
  CallLog& calls_;  // first, because the services need it

 public:
  struct Diagnostic {
    const char* file;  // the pointer itself
    int line;
    std::string text;
  };

  explicit RecordingContext(CallLog& calls) : calls_(calls) {}

  RecordingLog log{calls_};
  RecordingCfm cfm{calls_};
  RecordingEvent event{calls_};
  RecordingHeartbeat heartbeat{calls_};
  RecordingLoop loop{calls_};

  std::set<std::string> missing;  // getters that return null, for example "getCfm"

  std::vector<Diagnostic> diagnostics;
  std::vector<ITimer*> timers;                  // arguments of setTimer(), in order
  std::vector<IBootContext*> master_observers;  // arguments of registMasterObserver(), in order

  int init(std::uintptr_t arg1, std::uintptr_t arg2) override {
    return calls_.record("context.init", arg1, arg2);
  }

  int load() override { return calls_.record("context.load"); }
  int reserved5() override { return calls_.record("context.reserved5"); }
  ILog* getLog() override { return answer("getLog", log); }
  ICfm* getCfm() override { return answer("getCfm", cfm); }
  IEvent* getEvent() override { return answer("getEvent", event); }
  IHeartbeat* getHeartbeat() override { return answer("getHeartbeat", heartbeat); }
  ILoop* getLoop() override { return answer("getLoop", loop); }
  int reserved11() override { return calls_.record("context.reserved11"); }
  int reserved12() override { return calls_.record("context.reserved12"); }

  // The log omits the line, which changes with every edit of the source.
  int debugOut(const char* file, int line, const char* text) override {
    diagnostics.push_back({file, line, text});
    return calls_.record("context.debugOut", file, text);
  }

  int debugSwitch(int value) override { return calls_.record("context.debugSwitch", value); }
  int systemCall(const char* command) override { return calls_.record("context.systemCall", command); }
  int systemCall2(const char* command) override { return calls_.record("context.systemCall2", command); }
  int popenCall(const char* command) override { return calls_.record("context.popenCall", command); }
  int reserved18() override { return calls_.record("context.reserved18"); }

  int registMasterObserver(IBootContext* observer) override {
    master_observers.push_back(observer);
    return calls_.record("context.registMasterObserver", observer);
  }

  int setTimer(int first, int zero, int second, ITimer* timer) override {
    timers.push_back(timer);
    return calls_.record("context.setTimer", first, zero, second, timer);
  }

  int reserved21() override { return calls_.record("context.reserved21"); }
  int reserved22() override { return calls_.record("context.reserved22"); }
  int reserved23() override { return calls_.record("context.reserved23"); }
  int notifyDepends(std::string name) override { return calls_.record("context.notifyDepends", name); }

 private:
  template <typename Service>
  Service* answer(const std::string& getter, Service& service) {
    calls_.record("context." + getter);
    return missing.count(getter) == 0 ? &service : nullptr;
  }
};

#endif
