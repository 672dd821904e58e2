// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LIFECYCLE_LIFECYCLE_H
#define CPP2C_HOST_LIFECYCLE_LIFECYCLE_H

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/lifecycle/host_product.h"
#include "host/lifecycle/participant.h"

class IBootContext;
class IContext;
class ILog;

namespace host {

// Takes each step for all modules and then for the master observer. Reverses the steps in the opposite order.
//
// Participants are accessed only in the operations below: the master observer may be deleted
// before this object.
class Lifecycle {
 public:
  Lifecycle(IContext* context, std::vector<std::string> modules, ILog& log, Registry& registry);

  // Refuses a second master observer, and any after load().
  int registMasterObserver(IBootContext* observer);

  // Load, start, configure, run: takes each step for every participant before the next step. If a step fails,
  // reverses the completed steps and returns the failure.
  int load();

  // Unconfigure, stop, unload: reverses the completed steps, then calls the function set below.
  void unload();
  void callWhenUnloaded(std::function<void()> callback) { when_unloaded_ = std::move(callback); }

  // Passes the name to every loaded participant.
  void notifyDepends(const std::string& name);

  const std::vector<Participant>& modules() const { return product_.participants(); }
  State state() const { return state_; }  // the last step completed for all participants

 private:
  struct Member {
    IBootContext* boot;
    const char* configuration;  // argument of its onConfig()
  };

  std::array<Member, 2> members();  // the second is null if there is no master observer
  int takeSteps();

  ILog& log_;
  Registry& registry_;
  HostProduct product_;
  std::optional<Participant> master_observer_;
  std::function<void()> when_unloaded_ = [] {};
  bool loaded_ = false;
  State state_ = State::kIdle;
};

}  // namespace host

#endif
