// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_HTTP_HTTP_FIXTURE_H
#define CPP2C_TESTS_HOST_HTTP_HTTP_FIXTURE_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/http/http_client.h"
#include "tests/host/support/services.h"
#include "tests/support/temporary_folder.h"

namespace host {

// Clients of a server that the test creates at path_, all on one thread: the loop has its turn while the test
// waits for something.
class HttpFixture : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;
  using Client = std::unique_ptr<HttpClient>;

  // Gives the loop its turns until the condition is met. Fails the test if that takes too long.
  void until(const std::function<bool()>& met, const char* what);
  void turn();  // one

  Client connect() const { return std::make_unique<HttpClient>(path_); }

  // The answer to one request: "STATUS BODY". ask() and get() connect a client for it.
  std::string ask(const std::string& method, const std::string& target, const std::string& body = "");
  std::string get(const std::string& target) { return ask("GET", target); }
  std::string answerTo(HttpClient& client);

  Client follow(const std::string& target);  // returns once the stream has started

  // Waits until the client has received so many items, and returns them.
  Texts itemsFor(HttpClient& client, std::size_t count);

  void expectCutOff(HttpClient& client);

  TemporaryFolder folder_;
  const std::string path_ = folder_.file("control");
  LoopServices services_;
};

}  // namespace host

#endif
