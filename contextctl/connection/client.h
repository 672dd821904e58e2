// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_CLIENT_H
#define CPP2C_CONTEXTCTL_CONNECTION_CLIENT_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace contextctl {

class Interrupt;

// HTTP to the context behind a Unix socket. All operations throw Failure: kExitNo for a refusal, with the
// context's own words; kExitNoAnswer if there is no connection, no answer in time, or one of another kind.
class Client {
 public:
  using Query = std::vector<std::pair<std::string, std::string>>;  // a pair with an empty value is left out
  using OnItem = std::function<bool(const std::string& item)>;     // false: that was enough

  Client(std::string socket, double seconds) : socket_(std::move(socket)), seconds_(seconds) {}

  // Returns the body of the answer. `body` is empty where the request has none.
  std::string request(const std::string& method, const std::string& path, const Query& query,
                      const std::string& body) const;

  // Follows a stream until `on_item` has enough or the interrupt comes.
  void follow(const std::string& path, const Query& query, const Interrupt& interrupt,
              const OnItem& on_item) const;

 private:
  std::string socket_;
  double seconds_;
};

}  // namespace contextctl

#endif
