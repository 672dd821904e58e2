// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_PROCESS_OUTPUT_LINES_H
#define CPP2C_HOST_PROCESS_OUTPUT_LINES_H

#include <cstddef>
#include <string>
#include <string_view>

class ILog;

namespace host {

// Writes the output of a command to the log, each line as one record. A longer line than kLongest continues
// in further records.
class OutputLines {
 public:
  static constexpr std::size_t kLongest = 4096;

  explicit OutputLines(ILog& log) : log_(log) {}

  void add(std::string_view part);
  void finish();  // writes the last line even if no line feed ends it

 private:
  std::size_t recordAt(std::size_t start) const;
  void write(const std::string& record);

  ILog& log_;
  std::string pending_;
};

}  // namespace host

#endif
