// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STRICT_NEAREST_H
#define CPP2C_HOST_STRICT_NEAREST_H

#include <string>

// Finds the known name for which another one is probably meant: the nearest, if no more than two characters
// and less than half of it are wrong, missing or too many, or if letters are in the wrong case.
class Nearest {
 public:
  explicit Nearest(const std::string& name);

  void consider(const std::string& known);
  const std::string& name() const { return nearest_; }  // empty: none is near

 private:
  const std::string& name_;
  std::string nearest_;
  std::size_t distance_;  // from here on, a name is a different one
};

#endif
