// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_CALL_CHECKS_H
#define CPP2C_HOST_STRICT_CALL_CHECKS_H

#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "host/guard/guard.h"
#include "host/strict/foreign_thread_calls.h"
#include "host/strict/misuse.h"

namespace host {

class ConfigService;
class Heartbeat;
class Registry;

// Checks every call of the interface for misuse that the interface itself does not report. Refuses none.
class CallChecks final : public IOperationCheck {
 public:
  // Must be constructed on the loop's thread.
  CallChecks(const Misuse& misuse, EventBase& base, ConfigService& config, const Heartbeat& heartbeat,
             const Registry& registry);

  std::optional<int> before(const OperationCall& call) override;

 private:
  void checkDiagnostic(const OperationCall& call);
  void checkLength(const char* what, std::string_view text, std::size_t buffer) const;
  void checkLeaf(const std::string& fullname);
  void checkUint(const std::string& fullname, std::string_view value) const;
  void checkEvent(const std::string& event) const;
  void checkUnlock() const;

  const Misuse& misuse_;
  ConfigService& config_;
  const Heartbeat& heartbeat_;
  const Registry& registry_;
  const std::thread::id loop_thread_;
  ForeignThreadCalls foreign_thread_calls_;
  std::string last_leaf_;  // the argument of the latest getNode()
};

}  // namespace host

#endif
