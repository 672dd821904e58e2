// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_STRICT_CALLS_H
#define CPP2C_HOST_STRICT_STRICT_CALLS_H

#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "host/guard/guard.h"
#include "host/strict/foreign_calls.h"
#include "host/strict/misuse.h"

class ConfigService;
class Heartbeat;
class Registry;

// Looks at every call of the interface for what it leaves to the caller's care. It lets all of them pass.
class StrictCalls final : public IOperationCheck {
 public:
  // Made on the loop's thread.
  StrictCalls(const Misuse& misuse, EventBase& base, ConfigService& config, const Heartbeat& heartbeat,
              const Registry& registry);

  std::optional<int> before(const OperationCall& call) override;

 private:
  void checkDiagnostic(const OperationCall& call);
  void checkRoom(const char* what, std::string_view text, std::size_t room) const;
  void checkLeaf(const std::string& fullname);
  void checkUint(const std::string& fullname, std::string_view value) const;
  void checkEvent(const std::string& event) const;
  void checkUnlock() const;

  const Misuse& misuse_;
  ConfigService& config_;
  const Heartbeat& heartbeat_;
  const Registry& registry_;
  const std::thread::id loop_thread_;
  ForeignCalls foreign_calls_;
  std::string last_leaf_;  // that was looked for
};

#endif
