// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_HTTP_HTTP_CLIENT_H
#define CPP2C_TESTS_HOST_HTTP_HTTP_CLIENT_H

#include <cstddef>
#include <string>
#include <vector>

namespace host {

// One client of an HTTP server on a Unix socket, byte by byte. It never waits: move() sends and receives what
// it can at once.
class HttpClient {
 public:
  explicit HttpClient(const std::string& path);
  ~HttpClient() { leave(); }
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;

  void send(const std::string& bytes) { unsent_ += bytes; }
  void request(const std::string& method, const std::string& target, const std::string& body = "");
  void move();
  void write();
  void leave();

  bool isCutOff() const { return cut_off_; }
  bool hasSentAll() const { return unsent_.empty(); }
  const std::string& received() const { return received_; }

  // The first answer: "STATUS BODY" once it is complete, otherwise "". takeAnswer() also removes it.
  std::string answer() const;
  std::string takeAnswer();

  // What has arrived of a stream: the data of each item, and the number of pings.
  std::vector<std::string> items() const;
  std::size_t pings() const;

 private:
  void read();
  std::vector<std::string> blocks() const;
  std::string::size_type endOfAnswer() const;

  int fd_ = -1;
  bool cut_off_ = false;
  std::string unsent_;
  std::string received_;
};

}  // namespace host

#endif
