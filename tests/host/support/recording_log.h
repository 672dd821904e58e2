// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_RECORDING_LOG_H
#define CPP2C_TESTS_HOST_SUPPORT_RECORDING_LOG_H

#include <string>
#include <vector>

#include "binding/context.h"

namespace host {

// Keeps every record as "level module: text".
class RecordingLog final : public ILog {
 public:
  int record(std::string module, int level, const char* text) override {
    records.push_back(std::to_string(level) + ' ' + module + ": " + text);
    return 0;
  }

  std::vector<std::string> records;
};

}  // namespace host

#endif
