// SPDX-License-Identifier: MIT
#include "contextctl/leaves/near_name.h"

#include <algorithm>
#include <map>

#include "util/similar_name.h"

namespace contextctl {
namespace {

std::string withoutLastDot(std::string name) {
  if (!name.empty() && name.back() == '.') name.pop_back();
  return name;
}

// The last components of a name, without its last dot; the whole name if it has no more.
std::string lastComponents(const std::string& name, std::ptrdiff_t count) {
  std::string plain = withoutLastDot(name);
  size_t begin = std::string::npos;
  for (; count > 0; count--) {
    if (begin == 0) return plain;
    begin = plain.rfind('.', begin == std::string::npos ? begin : begin - 1);
    if (begin == std::string::npos) return plain;
  }
  return plain.substr(begin + 1);
}

}  // namespace

std::string findNearName(const std::string& prefix, const std::vector<Leaf>& leaves) {
  const std::string wanted = withoutLastDot(prefix);
  const auto count = std::count(wanted.begin(), wanted.end(), '.') + 1;
  std::map<std::string, std::string> names;  // by their last components
  for (const Leaf& leaf : leaves) {
    names.emplace(lastComponents(leaf.name, count), leaf.name);
    for (size_t dot = leaf.name.find('.'); dot != std::string::npos; dot = leaf.name.find('.', dot + 1)) {
      const std::string parent = leaf.name.substr(0, dot + 1);
      names.emplace(lastComponents(parent, count), parent);
    }
  }
  util::SimilarName similar(wanted);
  for (const auto& [last, name] : names) similar.consider(last);
  return similar.best().empty() ? "" : names[similar.best()];
}

}  // namespace contextctl
