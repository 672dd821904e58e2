// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LIFECYCLE_HOST_PRODUCT_H
#define CPP2C_HOST_LIFECYCLE_HOST_PRODUCT_H

#include <string>
#include <vector>

#include "boot/product_config.h"
#include "host/lifecycle/participant.h"

class ILog;

namespace host {

// The module libraries that the configuration and the command line name.
class HostProduct final : public IProductConfig {
 public:
  HostProduct(IContext* owner, std::vector<std::string> names, ILog& log, Registry& registry);

  // Opens every library unless they are open already. If one provides no module, logs this, closes the others
  // and returns a negative code. The libraries stay open as long as this object exists: their callbacks may
  // still be called after the last step.
  int open();

  // The participant of each module, in the order of the names. Empty before open().
  const std::vector<Participant>& participants() const { return participants_; }

  std::string productName() override;
  void listLibraries() override;
  std::string productVersion() override;

 private:
  int openModules();
  IModule* openModule(const std::string& name);
  void logFailure(const std::string& name);
  void wrapModules(const std::vector<IModule*>& opened);

  const std::vector<std::string> names_;
  ILog& log_;
  Registry& registry_;
  std::string next_;  // the library that listLibraries() lists
  std::vector<Participant> participants_;
};

}  // namespace host

#endif
