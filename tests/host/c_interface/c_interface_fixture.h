// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_C_INTERFACE_C_INTERFACE_FIXTURE_H
#define CPP2C_TESTS_HOST_C_INTERFACE_C_INTERFACE_FIXTURE_H

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/support/temporary_folder.h"

namespace host {

// A C program on the host context, with a configuration of its own and its log in a file.
class CInterfaceFixture : public testing::Test {
 protected:
  ~CInterfaceFixture() override { c_context_deinit(); }

  static int init(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "service");
    std::vector<const char*> argv;
    argv.reserve(arguments.size());
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    return c_context_init(argv.size(), reinterpret_cast<std::uintptr_t>(argv.data()));
  }

  int initWith(const std::string& config, std::vector<std::string> more = {}) {
    more.insert(more.end(),
                {"--config", folder_.write("config.json", config), "--log-file", folder_.file("log")});
    return init(std::move(more));
  }

  // The log's records without their times.
  std::vector<std::string> records() const {
    static constexpr std::size_t kTimeLength = sizeof "2026-01-01 00:00:00.000";
    std::vector<std::string> records;
    std::istringstream lines(folder_.read("log"));
    for (std::string line; std::getline(lines, line);) records.push_back(line.substr(kTimeLength));
    return records;
  }

  TemporaryFolder folder_;
};

}  // namespace host

#endif
