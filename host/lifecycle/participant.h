// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LIFECYCLE_PARTICIPANT_H
#define CPP2C_HOST_LIFECYCLE_PARTICIPANT_H

#include <map>
#include <string>

#include "boot/module.h"
#include "host/registration/registry.h"

class ILog;

namespace host {

enum class State { kIdle, kLoaded, kStarted, kConfigured, kRunning };

// "idle", "loaded", "started", "configured" or "running".
inline const char* nameOf(State state) {
  static constexpr const char* kNames[] = {"idle", "loaded", "started", "configured", "running"};
  return kNames[static_cast<int>(state)];
}

// Wraps a module or the master observer: passes on each step, logs a step that fails, and reverses only
// completed steps. A result that is not negative counts as 0.
//
// The wrapped object must exist until its last step.
class Participant final : public IModule {
 public:
  Participant(std::string name, IBootContext* boot, ILog& log, Registry& registry);
  Participant(Participant&&) = default;
  Participant(const Participant&) = delete;

  const std::string& name() const { return name_; }
  State state() const { return state_; }

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;
  int onStop() override;
  int onUnload() override;
  int recvDependence(std::string name) override;  // passed on while loaded

 private:
  template <typename Function>
  int advanceTo(State state, const char* operation, Function function);
  template <typename Function>
  int returnTo(State state, const char* operation, Function function);
  template <typename Function>
  int call(const char* operation, Function function);
  int check(const char* operation, int result);

  const std::string name_;
  IBootContext* const boot_;
  ILog& log_;
  // By operation; without those that a C module leaves empty.
  std::map<std::string, RegistrationHandle> steps_;
  State state_ = State::kIdle;
};

}  // namespace host

#endif
