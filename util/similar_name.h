// SPDX-License-Identifier: MIT
#ifndef CPP2C_UTIL_SIMILAR_NAME_H
#define CPP2C_UTIL_SIMILAR_NAME_H

#include <cstddef>
#include <string>

namespace util {

// Finds the known name that an unknown one was probably meant to be: the one with the fewest typing errors,
// at most two characters and less than half of the name, or the one that differs only in upper and lower
// case.
class SimilarName {
 public:
  static constexpr std::size_t kMostErrors = 2;

  explicit SimilarName(std::string unknown);
  SimilarName(std::string unknown, std::size_t most_errors);  // also if that is half of a short name

  void consider(const std::string& known);
  const std::string& best() const { return best_; }  // empty: none is similar

 private:
  const std::string unknown_;
  std::string best_;
  std::size_t limit_;  // a name with so many typing errors is a different one
};

}  // namespace util

#endif
