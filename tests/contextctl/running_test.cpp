// SPDX-License-Identifier: MIT
// The tests' own tools: whatever goes wrong in a test, it ends by itself.
#include <gtest/gtest-spi.h>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

using RunningTest = ContextctlTest;

TEST_F(RunningTest, AProgramThatDoesNotEndIsEndedWithItsChildren) {
  EXPECT_NONFATAL_FAILURE(
      {
        const Outcome outcome =
            runProgram(context.base(), {"sh", "-c", "sleep 3600 & wait"}, {}, nullptr, {0, 100000});
        EXPECT_EQ(outcome.status, -1);
      },
      "it does not end");
}

TEST_F(RunningTest, AnUnexpectedRequestIsAnsweredSoThatNobodyWaits) {
  Outcome outcome;
  EXPECT_NONFATAL_FAILURE(outcome = run({"watch"}), "unexpected request: GET /changes");
  expectOutcome(outcome, 3, "", "contextctl: HTTP status 500\n");
}

}  // namespace
}  // namespace contextctl
