// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_START_OPTIONS_H
#define CPP2C_HOST_START_OPTIONS_H

#include <string>
#include <vector>

#include "host/clock/clock.h"
#include "host/include/cpp2c_host.h"
#include "host/strict/misuse.h"

namespace host {

struct Options {
  std::string config;  // file; empty: none
  std::string state;   // file; empty: none
  std::vector<std::string> modules;
  std::string control;  // Unix socket; empty: none
  Strictness strictness = Strictness::kOff;
  int log_level = C_LOG_INFO;
  std::string log_file;  // empty: standard error
  bool log_reopen = false;
  bool debug = false;
  std::string script;  // file; empty: none
  Clock::Kind clock = Clock::Kind::kReal;
};

// Reads the arguments after the program's name, up to "--". Throws util::Error for the first mistake.
Options readOptions(int argc, const char* const* argv);

}  // namespace host

#endif
