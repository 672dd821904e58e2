// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LIFECYCLE_LIFECYCLE_H
#define CPP2C_HOST_LIFECYCLE_LIFECYCLE_H

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

// Takes the product's modules, then the master observer through their steps, and back again in reverse order.
// They are touched only inside the operations here: the master observer may be deleted before this.
class Lifecycle {
 public:
  Lifecycle(IContext* context, std::vector<std::string> modules, ILog& log, Registry& registry);

  // There is one master observer, and it comes before load().
  int registMasterObserver(IBootContext* observer);

  // Load, start, configure, run: each step for every participant before the next one. A failure takes back
  // what has been done and is the result.
  int load();

  // Unconfigure, stop, unload: takes back what has been done. `call` is made once it has been.
  void unload();
  void callWhenUnloaded(std::function<void()> call) { when_unloaded_ = std::move(call); }

  // Tells every participant that is loaded.
  void notifyDepends(const std::string& name);

  const std::vector<Participant>& modules() const { return product_.participants(); }
  State state() const { return state_; }  // the step that everybody has taken last

 private:
  struct Member {
    IBootContext* boot;
    const char* configuration;  // what its onConfig() is told
  };

  std::vector<Member> members();
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
