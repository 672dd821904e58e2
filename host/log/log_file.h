// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOG_LOG_FILE_H
#define CPP2C_HOST_LOG_LOG_FILE_H

#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

#include <string>

namespace host {

// A regular file that log lines are appended to, or one of /dev/null, /dev/stdout and /dev/stderr. A symbolic
// link is not followed. When lines cannot be written, prints one line to standard error and drops them until
// writing succeeds again.
class LogFile final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
 public:
  // Creates the file and its folder if they do not exist. Throws util::Error.
  explicit LogFile(const std::string& name);
  ~LogFile() override;

  // Opens the file of this name again, which may be another one now. Throws util::Error; lines are then still
  // appended to the old file.
  void reopen();

 private:
  void sink_it_(const spdlog::details::log_msg& message) override;
  void flush_() override {}

  const std::string path_;  // absolute, so that it is the same after the program has changed its folder
  int fd_;
  bool failed_ = false;
};

}  // namespace host

#endif
