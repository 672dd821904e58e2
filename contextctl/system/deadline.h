// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SYSTEM_DEADLINE_H
#define CPP2C_CONTEXTCTL_SYSTEM_DEADLINE_H

namespace contextctl {

// The end of a time limit that starts now.
class Deadline {
 public:
  explicit Deadline(double seconds);

  int millisecondsLeft() const;  // 0: it has passed; at most an hour, to fit the int of poll()

 private:
  double moment_;
};

}  // namespace contextctl

#endif
