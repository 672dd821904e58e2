// SPDX-License-Identifier: MIT
#include "host/process/processes.h"

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"
#include "tests/host/support/memory_log.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/host/support/without_standard_input.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/valgrind.h"

namespace host {
namespace {

using Records = std::vector<std::string>;

class ProcessesTest : public testing::Test {
 protected:
  MemoryLog log_;
  Processes processes_{log_};
};

TEST_F(ProcessesTest, ExitStatusIsReturned) {
  EXPECT_EQ(processes_.run("true"), 0);
  EXPECT_EQ(processes_.run("exit 42"), 42);
  EXPECT_EQ(processes_.runLogged("exit 42"), 42);
}

TEST_F(ProcessesTest, MissingCommandGivesTheStatusOfTheShell) {
  PrintedText printed;
  EXPECT_EQ(processes_.run("no-such-command"), 127);
}

TEST_F(ProcessesTest, SignalIsReportedLikeAShellDoes) {
  EXPECT_EQ(processes_.run("kill -TERM $$"), 128 + SIGTERM);
  EXPECT_EQ(processes_.runLogged("kill -KILL $$"), 128 + SIGKILL);
}

TEST_F(ProcessesTest, NullIsRefused) {
  EXPECT_EQ(processes_.run(nullptr), C_RESULT_PARAM);
  EXPECT_EQ(processes_.runLogged(nullptr), C_RESULT_PARAM);
}

TEST_F(ProcessesTest, EmptyCommandSucceeds) {
  EXPECT_EQ(processes_.run(""), 0);
}

TEST_F(ProcessesTest, ShellReadsTheCommand) {
  const TemporaryFolder folder;
  EXPECT_EQ(processes_.run(("echo one | tr o O >" + folder.file("out")).c_str()), 0);
  EXPECT_EQ(folder.read("out"), "One\n");
}

TEST_F(ProcessesTest, EarlierOutputOfTheProgramComesFirst) {
  PrintedText printed;
  std::printf("first ");
  processes_.run("printf second");
  EXPECT_EQ(printed.standardOutput(), "first second");
}

// The command prints to standard error, which is the same file.
TEST_F(ProcessesTest, EarlierOutputOfTheProgramComesBeforeThatOfALoggedCommand) {
  PrintedText printed;
  ASSERT_EQ(dup2(STDOUT_FILENO, STDERR_FILENO), STDERR_FILENO);
  std::printf("first ");
  processes_.runLogged("printf second >&2");
  EXPECT_EQ(printed.standardOutput(), "first second");
}

TEST_F(ProcessesTest, OutputIsLoggedLineByLine) {
  PrintedText printed;
  processes_.runLogged("echo one; echo; printf three");
  EXPECT_EQ(log_.records, (Records{"6 command: one\n", "6 command: \n", "6 command: three"}));
  EXPECT_EQ(printed.standardOutput(), "");
}

TEST_F(ProcessesTest, OutputOfAPlainCommandIsNotLogged) {
  PrintedText printed;
  processes_.run("echo one");
  EXPECT_EQ(log_.records, Records{});
  EXPECT_EQ(printed.standardOutput(), "one\n");
}

TEST_F(ProcessesTest, CommandThatCannotBeRunIsRefused) {
  if (underValgrind()) GTEST_SKIP() << "valgrind ends a process whose execve() fails";
  const std::string longer_than_an_argument(1 << 20, ' ');
  EXPECT_EQ(processes_.run(longer_than_an_argument.c_str()), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(processes_.runLogged(longer_than_an_argument.c_str()), C_RESULT_SYSTEM_CALL);
}

TEST_F(ProcessesTest, OutputCannotBeReadWithoutDescriptors) {
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none = {0, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  const int result = processes_.runLogged("true");
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(result, C_RESULT_SYSTEM_CALL);
}

TEST_F(ProcessesTest, DescriptorsAreClosed) {
  const std::size_t before = openDescriptors();
  EXPECT_EQ(processes_.run("exit 3"), 3);
  EXPECT_EQ(processes_.runLogged("exit 4"), 4);
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(ProcessesTest, CommandsAreRunWithoutStandardInput) {
  const WithoutStandardInput without;
  const std::size_t before = openDescriptors();
  EXPECT_EQ(processes_.run("exit 3"), 3);
  EXPECT_EQ(processes_.runLogged("echo out; exit 4"), 4);
  EXPECT_EQ(log_.records, Records{"6 command: out\n"});
  EXPECT_EQ(openDescriptors(), before);
}

// A handler without SA_RESTART interrupts the system call in which the process waits. The command sends the
// signal once the process sleeps, and goes on once the handler has removed the file.
class InterruptedProcessesTest : public ProcessesTest {
 protected:
  InterruptedProcessesTest() {
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) { unlink(removed_file_.c_str()); };
    sigaction(SIGUSR1, &interrupting, &before_);
    removed_file_ = folder_.write("file", "");
  }
  ~InterruptedProcessesTest() override { sigaction(SIGUSR1, &before_, nullptr); }

  std::string interruptThen(const std::string& commands) const {
    return "until grep -q '^State:.S' /proc/$PPID/status; do :; done; kill -USR1 $PPID; while test -e " +
           folder_.file("file") + "; do :; done; " + commands;
  }

 private:
  static inline std::string removed_file_;
  TemporaryFolder folder_;
  struct sigaction before_ = {};
};

TEST_F(InterruptedProcessesTest, SignalDoesNotInterruptTheWaitForACommand) {
  EXPECT_EQ(processes_.run(interruptThen("exit 3").c_str()), 3);
}

TEST_F(InterruptedProcessesTest, SignalDoesNotInterruptTheReadingOfOutput) {
  EXPECT_EQ(processes_.runLogged(interruptThen("echo out; exit 4").c_str()), 4);
  EXPECT_EQ(log_.records, Records{"6 command: out\n"});
}

}  // namespace

}  // namespace host
