// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMMANDS_SESSION_H
#define CPP2C_CONTEXTCTL_COMMANDS_SESSION_H

#include <functional>
#include <iosfwd>
#include <string>

#include "contextctl/connection/connection.h"

namespace contextctl {

// What a command works with: the connection, the common options and the output.
class Session {
 public:
  struct Options {
    std::string socket;   // of the context
    double seconds = 10;  // to wait for an answer
    bool json = false;
    bool reveal = false;  // show passwords
  };

  Session(const Options& options, std::ostream& out)
      : options_(options), connection_(options.socket, options.seconds), out_(out) {}

  const Connection& connection() const { return connection_; }
  const std::string& socket() const { return options_.socket; }
  double seconds() const { return options_.seconds; }
  bool json() const { return options_.json; }
  bool reveal() const { return options_.reveal; }
  std::ostream& out() const { return out_; }

  // Prints the answer as JSON with --json, otherwise as `print_text` does, or not at all without it.
  void show(const Answer& answer, const std::function<void(std::ostream& out)>& print_text = nullptr) const;

  // Receives `count` items of a stream (0: no limit), until Ctrl-C. Prints each as show() does.
  void follow(const std::string& path, const Query& query, int count,
              const std::function<void(const Record& item)>& print_text) const;

 private:
  Options options_;
  Connection connection_;
  std::ostream& out_;
};

// Writes buffered output. Throws Failure if it cannot be written.
void flush(std::ostream& out);

}  // namespace contextctl

#endif
