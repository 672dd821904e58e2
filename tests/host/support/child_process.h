// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_CHILD_PROCESS_H
#define CPP2C_TESTS_HOST_SUPPORT_CHILD_PROCESS_H

#include <grp.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace host {

// A child that runs the call, which is given a descriptor to write to; the parent reads what it writes. It is
// killed with the object, and ends without running destructors, as a killed process does.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<void(int output)>& call) {
    int ends[2];
    if (pipe(ends) != 0) ADD_FAILURE() << "no pipe";
    process_ = fork();
    if (process_ == 0) {
      close(ends[0]);
      call(ends[1]);
      _exit(0);
    }
    close(ends[1]);
    input_ = ends[0];
  }
  ~ChildProcess() {
    kill();
    close(input_);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  int input() const { return input_; }

  // The next line that it writes, or what there is of one when it ends.
  std::string line() const {
    std::string line;
    for (char character = 0; read(input_, &character, 1) == 1 && character != '\n';) line += character;
    return line;
  }

  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    wait();
  }

  // Until it ends; gives its wait status.
  int wait() {
    int status = -1;
    if (waitpid(process_, &status, 0) != process_) ADD_FAILURE() << "no child";
    process_ = 0;
    return status;
  }

 private:
  pid_t process_ = 0;
  int input_ = -1;
};

// The text that the call gives in a child process.
inline std::string inChild(const std::function<std::string()>& call) {
  ChildProcess child([&](int output) {
    const std::string text = call();
    if (write(output, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(1);
  });
  std::string text;
  char part[1024];
  for (ssize_t size; (size = read(child.input(), part, sizeof part)) > 0;) {
    text.append(part, static_cast<std::size_t>(size));
  }
  EXPECT_EQ(child.wait(), 0) << text;
  return text;
}

// Likewise, in a child that may do no more than an ordinary user, even if this process is root's.
inline std::string asOrdinaryUser(const std::function<std::string()>& call) {
  static constexpr unsigned kNobody = 65534;
  return inChild([&]() -> std::string {
    const bool root = geteuid() == 0;
    if (root && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
      return "cannot drop privileges";
    }
    return call();
  });
}

}  // namespace host

#endif
