// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_SECONDS_H
#define CPP2C_CONTEXTCTL_SECONDS_H

#include <string>

// A moment some seconds from now.
class Deadline {
 public:
  explicit Deadline(double seconds);

  int millisecondsLeft() const;  // 0: it has passed; never more than an hour, as poll() wants an int

 private:
  double moment_;
};

// As "10 s", "0.5 s".
std::string secondsText(double seconds);

#endif
