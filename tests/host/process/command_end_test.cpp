// SPDX-License-Identifier: MIT
// When a command has ended, whatever it leaves running and whatever the program does with SIGCHLD.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/process/processes.h"
#include "tests/host/support/memory_log.h"
#include "tests/support/valgrind.h"

namespace host {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

class CommandEndTest : public testing::Test {
 protected:
  // The process whose number was logged.
  pid_t loggedProcess() const {
    const std::string record = log_.records.at(0);
    return static_cast<pid_t>(std::stoi(record.substr(record.rfind(' '))));
  }

  MemoryLog log_;
  Processes processes_{log_};
};

TEST_F(CommandEndTest, ProcessInTheBackgroundIsNotAwaited) {
  if (underValgrind())
    GTEST_SKIP() << "valgrind does not have the system call that waits for the shell alone";
  const auto start = steady_clock::now();
  EXPECT_EQ(processes_.runLogged("sleep 20 & echo $!; printf last; exit 3"), 3);
  EXPECT_LT(steady_clock::now() - start, seconds(10));
  ASSERT_EQ(log_.records.size(), 2U);
  EXPECT_EQ(log_.records[1], "6 command: last");
  EXPECT_EQ(kill(loggedProcess(), SIGTERM), 0);
}

TEST_F(CommandEndTest, OutputWithoutEndInTheBackgroundIsNotAwaited) {
  if (underValgrind())
    GTEST_SKIP() << "valgrind does not have the system call that waits for the shell alone";
  const auto start = steady_clock::now();
  EXPECT_EQ(processes_.runLogged("echo $$; timeout 20 yes & exit 3"), 3);
  EXPECT_LT(steady_clock::now() - start, seconds(10));
}

// Sets what the process does with SIGCHLD, until the end of the test.
class ChildSignal {
 public:
  ChildSignal(void (*handler)(int), int flags) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(SIGCHLD, &action, &before_);
  }
  ~ChildSignal() { sigaction(SIGCHLD, &before_, nullptr); }
  ChildSignal(const ChildSignal&) = delete;
  ChildSignal& operator=(const ChildSignal&) = delete;

  static struct sigaction current() {
    struct sigaction action {};
    sigaction(SIGCHLD, nullptr, &action);
    return action;
  }

 private:
  struct sigaction before_ {};
};

void doNothing(int) {}

void reapAll(int) {
  while (waitpid(-1, nullptr, WNOHANG) > 0) {
  }
}

TEST_F(CommandEndTest, StatusIsKnownWhenTheSignalIsIgnored) {
  const ChildSignal ignored(SIG_IGN, 0);
  EXPECT_EQ(processes_.run("exit 3"), 3);
  EXPECT_EQ(processes_.runLogged("echo out; exit 4"), 4);
  EXPECT_EQ(log_.records, std::vector<std::string>{"6 command: out\n"});
  EXPECT_EQ(ChildSignal::current().sa_handler, SIG_IGN);
}

TEST_F(CommandEndTest, StatusIsKnownWhenTheProgramWantsNoStatus) {
  const ChildSignal unwanted(doNothing, SA_NOCLDWAIT);
  EXPECT_EQ(processes_.run("exit 3"), 3);
  EXPECT_EQ(processes_.runLogged("exit 4"), 4);
  EXPECT_EQ(ChildSignal::current().sa_handler, doNothing);
  EXPECT_NE(ChildSignal::current().sa_flags & SA_NOCLDWAIT, 0);
}

TEST_F(CommandEndTest, StatusIsKnownWhenAHandlerReapsEveryChild) {
  const ChildSignal reaped(reapAll, SA_RESTART);
  EXPECT_EQ(processes_.run("exit 3"), 3);
  EXPECT_EQ(processes_.runLogged("exit 4"), 4);
}

TEST_F(CommandEndTest, SignalIsNotBlockedAfterwards) {
  processes_.run("true");
  sigset_t blocked;
  ASSERT_EQ(sigprocmask(SIG_BLOCK, nullptr, &blocked), 0);
  EXPECT_EQ(sigismember(&blocked, SIGCHLD), 0);
}

std::string blockedSignals() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("SigBlk:", 0) == 0) return line;
  }
  return "unknown";
}

TEST_F(CommandEndTest, CommandBlocksTheSignalsThatTheProgramBlocks) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  ASSERT_EQ(sigprocmask(SIG_BLOCK, &blocked, &before), 0);
  processes_.runLogged("exec grep SigBlk: /proc/self/status");
  EXPECT_EQ(log_.records, std::vector<std::string>{"6 command: " + blockedSignals() + '\n'});
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

// The program does not wait for its children if it ignores the signal.
TEST_F(CommandEndTest, OtherChildThatEndsMeanwhileIsReaped) {
  const ChildSignal ignored(SIG_IGN, 0);
  const pid_t other = fork();
  if (other == 0) {
    pause();
    _exit(0);
  }
  const std::string number = std::to_string(other);
  const std::string end = "kill -TERM " + number + "; while [ -d /proc/" + number +
                          " ] && ! grep -q zombie /proc/" + number + "/status; do sleep 0.01; done";
  EXPECT_EQ(processes_.run(end.c_str()), 0);
  EXPECT_EQ(waitpid(other, nullptr, WNOHANG), -1);
}

}  // namespace

}  // namespace host
