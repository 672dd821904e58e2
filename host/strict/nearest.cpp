// SPDX-License-Identifier: MIT
#include "host/strict/nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

std::size_t difference(std::size_t a, std::size_t b) {
  return a > b ? a - b : b - a;
}

// How many characters have to be changed, added or taken away to make one text of the other.
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

std::string lowerCase(std::string text) {
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return text;
}

}  // namespace

Nearest::Nearest(const std::string& name)
    : name_(name), distance_(std::min<std::size_t>(3, (name.size() + 1) / 2)) {}

void Nearest::consider(const std::string& known) {
  if (difference(known.size(), name_.size()) >= distance_) return;
  // However many letters are in the wrong case, no other name is nearer.
  const std::size_t distance = lowerCase(known) == lowerCase(name_) ? 0 : distanceBetween(known, name_);
  if (distance >= distance_) return;
  distance_ = distance;
  nearest_ = known;
}
