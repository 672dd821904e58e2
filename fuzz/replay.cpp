// SPDX-License-Identifier: MIT
// Runs a harness on every file of the given folders, without libFuzzer.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/harness.h"

namespace {

std::vector<std::filesystem::path> filesIn(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  std::vector<std::filesystem::path> files(begin(entries), end(entries));
  std::sort(files.begin(), files.end());
  return files;
}

bool replay(const std::filesystem::path& file) {
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);  // the last file printed is the culprit if the harness aborts
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) return false;
  return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  close_range(STDERR_FILENO + 1, ~0U, 0);  // a harness may find inherited descriptors by their numbers
  int count = 0;
  for (int i = 1; i < argc; i++) {
    for (const auto& file : filesIn(argv[i])) {
      if (!replay(file)) {
        std::fprintf(stderr, "%s: failed\n", file.c_str());
        return 1;
      }
      count++;
    }
  }
  std::printf("%d files\n", count);
  return count > 0 ? 0 : 1;
}
