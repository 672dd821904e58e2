// SPDX-License-Identifier: MIT
// Any text is read as a file of leaves that can be written and read back unchanged, or refused with one
// message that names its source.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "contextctl/failure.h"
#include "contextctl/tree_file.h"
#include "fuzz/harness.h"

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

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    checkWrittenAgain(readTree(std::string(data, data + size), kSource));
  } catch (const Failure& failure) {
    require(failure.status() == kExitNoAnswer, "an invalid file has the status for no answer");
    require(std::strncmp(failure.what(), kSource, std::strlen(kSource)) == 0, "a message names its source");
  }
  return 0;
}
