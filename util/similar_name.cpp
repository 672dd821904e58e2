// SPDX-License-Identifier: MIT
#include "util/similar_name.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace util {
namespace {

std::size_t difference(std::size_t a, std::size_t b) {
  return a > b ? a - b : b - a;
}

// The Levenshtein distance: how many characters to change, insert or delete to turn one text into the other.
std::size_t distanceBetween(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (std::size_t i = 0; i < a.size(); i++) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); j++) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

char lowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool equalInAnyCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return lowerCase(left) == lowerCase(right); });
}

}  // namespace

SimilarName::SimilarName(std::string unknown)
    : unknown_(std::move(unknown)), limit_(std::min(kMostErrors + 1, (unknown_.size() + 1) / 2)) {}

SimilarName::SimilarName(std::string unknown, std::size_t most_errors)
    : unknown_(std::move(unknown)), limit_(most_errors + 1) {}

void SimilarName::consider(const std::string& known) {
  if (difference(known.size(), unknown_.size()) >= limit_) return;
  // The same name in another case is the best match, however many letters differ.
  const std::size_t distance = equalInAnyCase(known, unknown_) ? 0 : distanceBetween(known, unknown_);
  if (distance >= limit_) return;
  limit_ = distance;
  best_ = known;
}

}  // namespace util
