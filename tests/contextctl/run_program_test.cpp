// SPDX-License-Identifier: MIT
// Tests of the test support: every test ends, whatever goes wrong.
#include <gtest/gtest-spi.h>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

using RunProgramTest = ContextctlTest;

TEST_F(RunProgramTest, AProgramThatDoesNotEndIsKilledWithItsChildren) {
  EXPECT_NONFATAL_FAILURE(
      {
        const Outcome outcome =
            runProgram(context.base(), {"sh", "-c", "sleep 3600 & wait"}, {}, nullptr, {0, 100000});
        EXPECT_EQ(outcome.status, -1);
      },
      "the program does not end");
}

TEST_F(RunProgramTest, AnUnexpectedRequestIsAnswered) {
  Outcome outcome;
  EXPECT_NONFATAL_FAILURE(outcome = run({"follow", "changes"}), "unexpected request: GET /changes");
  expectOutcome(outcome, 3, "", "contextctl: HTTP status 500\n");
}

}  // namespace
}  // namespace contextctl
