// SPDX-License-Identifier: MIT
#ifndef CPP2C_UTIL_HARMLESS_SIGNAL_H
#define CPP2C_UTIL_HARMLESS_SIGNAL_H

namespace util {

// Keeps a signal from ending the process. If the program has set an action for the signal itself, that action
// stays.
class HarmlessSignal {
 public:
  explicit HarmlessSignal(int signal);
  ~HarmlessSignal();
  HarmlessSignal(const HarmlessSignal&) = delete;
  HarmlessSignal& operator=(const HarmlessSignal&) = delete;

 private:
  const int signal_;
  const bool replaced_;
};

}  // namespace util

#endif
