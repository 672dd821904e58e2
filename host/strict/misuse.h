// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_MISUSE_H
#define CPP2C_HOST_STRICT_MISUSE_H

#include <string>

class ILog;

// Whether misuse is looked for, and what becomes of it.
enum class Strictness { kOff, kWarn, kFatal };

// Reports misuse of the interface: a warning in the log, or a line on standard error and the end of the
// process.
class Misuse {
 public:
  Misuse(ILog& log, bool fatal) : log_(log), fatal_(fatal) {}

  void report(const std::string& what) const;

  // The same with the place in the service from which the context has been called.
  void reportCall(const std::string& what) const;
  void reportCall(const std::string& what, const void* caller) const;

 private:
  ILog& log_;
  const bool fatal_;
};

#endif
