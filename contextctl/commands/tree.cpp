// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/leaves/leaf.h"
#include "util/text.h"

namespace contextctl {
namespace {

std::vector<std::string> partsOf(const std::string& name) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= name.size();) {
    const size_t end = std::min(name.find('.', begin), name.size());
    parts.push_back(name.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

// Prints names that share their first parts under one heading for each part.
class Outline {
 public:
  explicit Outline(std::ostream& out) : out_(out) {}

  void add(const Leaf& leaf) {
    const std::vector<std::string> parts = partsOf(leaf.name);
    size_t depth = 0;
    while (depth + 1 < parts.size() && depth < path_.size() && parts[depth] == path_[depth]) depth++;
    path_.resize(depth);
    for (; depth + 1 < parts.size(); depth++) {
      line(depth, parts[depth]);
      path_.push_back(parts[depth]);
    }
    line(depth, parts.back() + " = " + shown(leaf.value) + "  [" + shownType(leaf) + ']');
  }

 private:
  void line(size_t depth, const std::string& text) {
    out_ << std::string(2 * depth, ' ') << util::printable(text) << '\n';
  }

  std::ostream& out_;
  std::vector<std::string> path_;
};

}  // namespace

void showTree(const Session& session, const std::string& prefix) {
  const Answer answer = session.get("/tree", leafQuery(prefix, session.reveal()));
  session.show(answer, [&](std::ostream& out) {
    Outline outline(out);
    for (const Record& record : answer.list("leaves")) outline.add(leafOf(record));
  });
}

}  // namespace contextctl
