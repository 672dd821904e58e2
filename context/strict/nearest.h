// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_STRICT_NEAREST_H
#define CPP2C_CONTEXT_STRICT_NEAREST_H

#include <string>

// Finds the known name for which another one is probably meant: the nearest, if no more than two characters
// are wrong, missing, too many or in the wrong case.
class Nearest {
 public:
  explicit Nearest(const std::string& name) : name_(name) {}

  void consider(const std::string& known);
  const std::string& name() const { return nearest_; }  // empty: none is near

 private:
  const std::string& name_;
  std::string nearest_;
  std::size_t distance_ = 3;  // from here on, a name is a different one
};

#endif
