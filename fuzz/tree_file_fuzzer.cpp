// SPDX-License-Identifier: MIT
// Any text is a file of leaves that is written again with the same leaves, or is refused in one message.
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

void checkWrittenAgain(const std::vector<Leaf>& leaves) {
  const std::vector<Leaf> again = readTree(writeTree(leaves), kSource);
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
    contextctl::checkWrittenAgain(contextctl::readTree(std::string(data, data + size), contextctl::kSource));
  } catch (const contextctl::Failure& failure) {
    require(failure.status() == contextctl::kExitNoAnswer, "a file that cannot be read is no answer");
    require(std::strncmp(failure.what(), contextctl::kSource, std::strlen(contextctl::kSource)) == 0,
            "a message names its source");
  }
  return 0;
}
