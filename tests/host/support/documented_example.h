// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_DOCUMENTED_EXAMPLE_H
#define CPP2C_TESTS_HOST_SUPPORT_DOCUMENTED_EXAMPLE_H

#include <fstream>
#include <iterator>
#include <string>

namespace host {

// The first JSON text between marks on a page of the documentation.
inline std::string documentedExample(const std::string& page) {
  std::ifstream stream(DOCUMENTATION "/" + page);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::string mark = "```json\n";
  const auto start = text.find(mark) + mark.size();
  return text.substr(start, text.find("```", start) - start);
}

}  // namespace host

#endif
