// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_CONTEXTCTL_TEST_H
#define CPP2C_TESTS_CONTEXTCTL_CONTEXTCTL_TEST_H

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/contextctl/context_double.h"
#include "tests/contextctl/run_program.h"
#include "tests/support/temporary_folder.h"

namespace contextctl {

// Runs contextctl against a double of the context.
class ContextctlTest : public testing::Test {
 protected:
  Outcome run(const std::vector<std::string>& arguments, const OnOutput& on_output = nullptr) {
    return runIn({"CPP2C_CONTROL=" + socket}, arguments, on_output);
  }

  // With a changed environment, see runProgram().
  Outcome runIn(const std::vector<std::string>& environment, const std::vector<std::string>& arguments,
                const OnOutput& on_output = nullptr) {
    std::vector<std::string> words = {CPP2C_CONTEXTCTL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(context.base(), words, environment, on_output);
  }

  // Expects success and exactly this output.
  void expectOutput(const std::vector<std::string>& arguments, const std::string& text) {
    expectOutcome(run(arguments), 0, text, "");
  }

  // Expects failure with this line on standard error.
  void expectFailure(const std::vector<std::string>& arguments, int status, const std::string& line) {
    expectOutcome(run(arguments), status, "", "contextctl: " + line + '\n');
  }

  static void expectOutcome(const Outcome& outcome, int status, const std::string& out,
                            const std::string& err) {
    EXPECT_EQ(outcome.out, out);
    EXPECT_EQ(outcome.err, err);
    EXPECT_EQ(outcome.status, status);
  }

  TemporaryFolder folder;
  std::string socket = folder.file("control.sock");
  ContextDouble context{socket};
};

using Requests = std::vector<std::string>;

constexpr const char* kDone = R"({"result":0})";

}  // namespace contextctl

#endif
