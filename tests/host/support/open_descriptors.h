// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_OPEN_DESCRIPTORS_H
#define CPP2C_TESTS_HOST_SUPPORT_OPEN_DESCRIPTORS_H

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace host {

// How many descriptors this process has open.
inline std::size_t openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace host

#endif
