// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_CONTROL_CONTROL_CLIENT_H
#define CPP2C_TESTS_HOST_CONTROL_CONTROL_CLIENT_H

#include <string>
#include <vector>

namespace host {

// One client of a control socket, byte by byte. It never waits: move() passes on what can be passed on now.
class ControlClient {
 public:
  explicit ControlClient(const std::string& path);
  ~ControlClient() { leave(); }
  ControlClient(const ControlClient&) = delete;
  ControlClient& operator=(const ControlClient&) = delete;

  void send(const std::string& bytes) { unsent_ += bytes; }
  void request(const std::string& method, const std::string& target, const std::string& body = "");
  void move();
  void write();
  void leave();

  bool isCutOff() const { return cut_off_; }
  bool hasSentAll() const { return unsent_.empty(); }
  const std::string& received() const { return received_; }

  // The first answer: "STATUS BODY", once it is complete, otherwise "". That which takes it is the next one.
  std::string answer() const;
  std::string takeAnswer();

  // The data of each item of a stream so far.
  std::vector<std::string> items() const;

 private:
  void read();
  std::string::size_type endOfAnswer() const;

  int fd_ = -1;
  bool cut_off_ = false;
  std::string unsent_;
  std::string received_;
};

}  // namespace host

#endif
