// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_MISUSE_H
#define CPP2C_HOST_STRICT_MISUSE_H

#include <string>

class ILog;

namespace host {

// Whether strict mode checks for misuse, and what it does about it.
enum class Strictness { kOff, kWarn, kFatal };

// Reports misuse of the interface: a warning in the log; if fatal, also a line on standard error and SIGABRT.
class Misuse {
 public:
  Misuse(ILog& log, bool fatal) : log_(log), fatal_(fatal) {}

  void report(const std::string& what) const;

  // Also names the place in the service that called the context. `advice` ends the message, if there is any.
  void reportCall(const std::string& what, const std::string& advice = "") const;
  void reportCallFrom(const void* caller, const std::string& what, const std::string& advice = "") const;

 private:
  ILog& log_;
  const bool fatal_;
};

}  // namespace host

#endif
