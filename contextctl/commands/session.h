// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMMANDS_SESSION_H
#define CPP2C_CONTEXTCTL_COMMANDS_SESSION_H

#include <functional>
#include <iosfwd>
#include <string>

#include "contextctl/connection/client.h"
#include "contextctl/connection/message.h"

namespace contextctl {

// What a command works with: the context, the user's wishes and the output.
class Session {
 public:
  struct Wishes {
    std::string control;  // socket of the context
    double seconds = 10;  // to wait for an answer
    bool json = false;    // for scripts
    bool reveal = false;  // show the values of "pwd" leaves
  };

  Session(const Wishes& wishes, std::ostream& out)
      : wishes_(wishes), client_(wishes.control, wishes.seconds), out_(out) {}

  bool json() const { return wishes_.json; }
  bool reveal() const { return wishes_.reveal; }
  std::ostream& out() const { return out_; }

  Answer get(const std::string& path, const Client::Query& query = {}) const;
  Answer put(const std::string& path, const Members& members) const;
  Answer post(const std::string& path, const Members& members) const;
  Answer remove(const std::string& path, const Client::Query& query) const;
  std::string getText(const std::string& path, const Client::Query& query = {}) const;  // as it came

  // Prints the answer as it is for --json, otherwise in words, if it needs any.
  void show(const Answer& answer, const std::function<void(std::ostream& out)>& in_words = nullptr) const;

  // Hands `on_item` each item of a stream until `count` have come (0: no limit) or Ctrl-C. With --json each
  // is printed instead.
  void follow(const std::string& path, const Client::Query& query, int count,
              const std::function<void(const Record& item)>& on_item) const;

 private:
  Wishes wishes_;
  Client client_;
  std::ostream& out_;
};

// Sends what has been printed on its way. Throws Failure if it cannot be written.
void flush(std::ostream& out);

// The socket to use where none is named: CPP2C_CONTROL, else the user's place for run-time files.
std::string defaultControl();

}  // namespace contextctl

#endif
