// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_DEADLINE_H
#define CPP2C_CONTEXTCTL_SYSTEM_DEADLINE_H

namespace contextctl {

// A moment some seconds from now.
class Deadline {
 public:
  explicit Deadline(double seconds);

  int millisecondsLeft() const;  // 0: it has passed; never more than an hour, as poll() wants an int

 private:
  double moment_;
};

}  // namespace contextctl

#endif
