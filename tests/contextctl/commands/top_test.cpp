// SPDX-License-Identifier: MIT
#include <signal.h>

#include "tests/contextctl/commands/answers.h"
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class TopTest : public ContextctlTest {
 protected:
  void SetUp() override {
    context.answer("GET /statistics", kStatistics);
    context.answer("GET /registrations", kRegistrations);
  }
};

TEST_F(TopTest, TheCostliestRegistrationComesFirst) {
  expectOutput({"top", "--count", "1"},
               "hello (42), running for 1 day 02:03:04, 7 calls, busy for 1.500 ms\n"
               "RECENT MS  RECENT COUNT  TOTAL MS  COUNT  LONGEST MS  KIND   KEY  FUNCTION\n"
               "12.250     10            12.250    10     3.000       timer  1    tick\n"
               "0.500      2             0.500     2      0.400       fd     7    read_line\n");
}

TEST_F(TopTest, RecentCostsAreThoseSinceThePreviousSample) {
  const Outcome outcome = run({"top", "--count", "2", "--interval", "0.01"});
  EXPECT_NE(outcome.out.find("\n\nhello (42)"), std::string::npos);
  EXPECT_NE(outcome.out.find("0.000      0             12.250    10     3.000       timer"),
            std::string::npos);
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(TopTest, FiguresThatAreNotNumbersArePrintable) {
  context.answer("GET /statistics",
                 R"({"pid":"\u001b","program":"\n","uptimeMs":0,"calls":"\u009b","busyMs":0})");
  context.answer("GET /registrations", R"({"registrations":[]})");
  const std::string out = run({"top", "--count", "1"}).out;
  EXPECT_EQ(out.substr(0, out.find('\n')),
            "\\n (\\x1b), running for 00:00:00, \\x9b calls, busy for 0.000 ms");
}

TEST_F(TopTest, TheOrderIsThatOfRecentCosts) {
  context.onAnswered("GET /registrations", [&] {
    context.answer("GET /registrations",
                   R"({"registrations":[)"
                   R"({"kind":"timer","key":"1","function":"tick","location":"","since":"S","count":11,)"
                   R"("totalMs":13,"longestMs":3},)"
                   R"({"kind":"fd","key":"7","function":"read_line","location":"","since":"S","count":5,)"
                   R"("totalMs":2.5,"longestMs":1},)"
                   R"({"kind":"fd","key":"7","function":"read_line","location":"","since":"T","count":1,)"
                   R"("totalMs":0.25,"longestMs":1}]})");
  });
  const std::string out = run({"top", "--count", "2", "--interval", "0.01"}).out;
  const size_t second = out.find("\n\n") + 2;
  EXPECT_EQ(out.substr(out.find('\n', second) + 1),
            "RECENT MS  RECENT COUNT  TOTAL MS  COUNT  LONGEST MS  KIND   KEY  FUNCTION\n"
            "2.000      3             2.500     5      1.000       fd     7    read_line\n"
            "0.750      1             13.000    11     3.000       timer  1    tick\n"
            "0.250      1             0.250     1      1.000       fd     7    read_line\n");
}

TEST_F(TopTest, JsonPrintsOneLinePerSample) {
  context.answer("GET /statistics", R"({"pid":42})");
  context.answer("GET /registrations", R"({"registrations":[]})");
  const std::string line = "{\"statistics\":{\"pid\":42},\"registrations\":[]}\n";
  expectOutput({"top", "--count", "2", "--interval", "0.01", "--json"}, line + line);
}

TEST_F(TopTest, CtrlCEndsItWithSuccess) {
  const Outcome outcome =
      run({"top", "--interval", "3600"}, [](pid_t process, const Outcome&) { kill(process, SIGINT); });
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

}  // namespace
}  // namespace contextctl
