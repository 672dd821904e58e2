// SPDX-License-Identifier: MIT
#include "util/harmless_signal.h"

#include <csignal>

#include <gtest/gtest.h>

#include "host/process/processes.h"
#include "tests/host/support/memory_log.h"

namespace host {
namespace {

sighandler_t brokenPipeHandler() {
  struct sigaction action {};
  sigaction(SIGPIPE, nullptr, &action);
  return action.sa_handler;
}

TEST(BrokenPipeTest, BrokenPipeDoesNotEndTheProcess) {
  const util::HarmlessSignal broken_pipe(SIGPIPE);
  EXPECT_EQ(raise(SIGPIPE), 0);
  EXPECT_NE(brokenPipeHandler(), SIG_DFL);
}

TEST(BrokenPipeTest, DefaultActionIsRestored) {
  { const util::HarmlessSignal broken_pipe(SIGPIPE); }
  EXPECT_EQ(brokenPipeHandler(), SIG_DFL);
}

TEST(BrokenPipeTest, CommandsHaveTheDefaultAction) {
  const util::HarmlessSignal broken_pipe(SIGPIPE);
  MemoryLog log;
  EXPECT_EQ(Processes(log).run("kill -PIPE $$"), 128 + SIGPIPE);
}

TEST(BrokenPipeTest, HandlerOfTheProgramStays) {
  std::signal(SIGPIPE, SIG_IGN);
  {
    const util::HarmlessSignal broken_pipe(SIGPIPE);
    EXPECT_EQ(brokenPipeHandler(), SIG_IGN);
  }
  EXPECT_EQ(brokenPipeHandler(), SIG_IGN);
  std::signal(SIGPIPE, SIG_DFL);
}

}  // namespace

}  // namespace host
