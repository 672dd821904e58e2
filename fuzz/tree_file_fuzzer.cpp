// SPDX-License-Identifier: MIT
// Any text is either a file of leaves, which can be written again with the same leaves, or is rejected.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "contextctl/leaves/leaf_file.h"
#include "contextctl/system/failure.h"
#include "fuzz/harness.h"

namespace contextctl {
namespace {

const char kSource[] = "tree.json";

// A file is written in the order of the names.
void checkWrittenAgain(std::vector<Leaf> leaves) {
  std::sort(leaves.begin(), leaves.end(), [](const Leaf& a, const Leaf& b) { return a.name < b.name; });
  const std::vector<Leaf> again = parseLeaves(formatLeaves(leaves), kSource);
  require(again.size() == leaves.size(), "no leaf is lost");
  for (std::size_t i = 0; i < leaves.size(); i++) {
    require(again[i].name == leaves[i].name, "a name is kept");
    require(again[i].type == leaves[i].type, "a type is kept");
    require(again[i].value == leaves[i].value, "a value is kept");
  }
}

}  // namespace
}  // namespace contextctl

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    contextctl::checkWrittenAgain(
        contextctl::parseLeaves(std::string(data, data + size), contextctl::kSource));
  } catch (const contextctl::Failure& failure) {
    require(failure.status() == contextctl::kExitNoAnswer, "an invalid file has its exit status");
    require(std::strncmp(failure.what(), contextctl::kSource, std::strlen(contextctl::kSource)) == 0,
            "a message begins with its source");
  }
  return 0;
}
