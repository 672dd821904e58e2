// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_CONNECTION_H
#define CPP2C_CONTEXTCTL_CONNECTION_CONNECTION_H

#include <functional>
#include <string>
#include <utility>

#include "contextctl/connection/message.h"

namespace contextctl {

class Interrupt;

// HTTP requests to the context behind a Unix socket. Every request throws Failure on error: kExitNo with the
// context's own message if the context refuses it; kExitUsage if the socket has no name; kExitNoAnswer if
// there is no connection, another user's program listens there, or there is no answer in time or an invalid
// one.
class Connection {
 public:
  using OnItem = std::function<bool(const Answer& item)>;  // returns false to end the stream

  Connection(std::string socket, double seconds) : socket_(std::move(socket)), seconds_(seconds) {}

  Answer get(const std::string& path, const Query& query = {}) const;
  Answer put(const std::string& path, const Members& members) const;
  Answer post(const std::string& path, const Members& members) const;
  Answer remove(const std::string& path, const Query& query) const;
  std::string getText(const std::string& path, const Query& query = {}) const;  // the unparsed answer

  // Receives the items of a stream until `on_item` returns false or the interrupt arrives.
  void follow(const std::string& path, const Query& query, const Interrupt& interrupt,
              const OnItem& on_item) const;

 private:
  std::string request(const std::string& method, const std::string& path, const Query& query,
                      const std::string& body) const;

  std::string socket_;
  double seconds_;
};

// The socket to connect to if the user names none: CPP2C_CONTROL, or the default place for the user. Empty if
// there is no place that only the user and root can write to.
std::string defaultSocket();

}  // namespace contextctl

#endif
