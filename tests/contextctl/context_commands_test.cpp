// SPDX-License-Identifier: MIT
#include <signal.h>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

constexpr const char* kStatistics =
    R"({"pid":42,"program":"hello","uptimeMs":93784005.5,"clock":"real","callbacks":7,"busyMs":1.5,)"
    R"("longestMs":0.30000000000000004,"events":2,"changes":3,"clients":1})";

constexpr const char* kRegistrations =
    R"({"registrations":[)"
    R"({"kind":"fd","key":"7","function":"read_line","location":"hello.c:20","since":"S","count":2,)"
    R"("totalMs":0.5,"longestMs":0.4,"lastMs":0.1,"lastResult":0},)"
    R"({"kind":"timer","key":"1","function":"tick","location":"","since":"S","count":10,)"
    R"("totalMs":12.25,"longestMs":3,"lastMs":1,"lastResult":-1023}]})";

class ContextCommandsTest : public ContextctlTest {
 protected:
  void knowFigures() {
    context.answer("GET /statistics", kStatistics);
    context.answer("GET /registrations", kRegistrations);
  }
};

TEST_F(ContextCommandsTest, SaveAsksAndSaysNothing) {
  context.answer("POST /save", kDone);
  expectOutput({"save"}, "");
  EXPECT_EQ(context.requests(), Requests{"POST /save {}"});
}

TEST_F(ContextCommandsTest, SaveTellsWhyItFailed) {
  context.answer("POST /save", R"({"result":-1022,"error":"no state file"})", 503);
  expectFailure({"save"}, 1, "no state file");
}

TEST_F(ContextCommandsTest, StopAsksAndSaysNothing) {
  context.answer("POST /stop", kDone);
  expectOutput({"stop"}, "");
}

TEST_F(ContextCommandsTest, ModulesAreATable) {
  context.answer("GET /modules", R"({"modules":[{"library":"./libnet.so","state":"running"},)"
                                 R"({"library":"libwifi.so","state":"failed"}],"state":"running"})");
  expectOutput({"modules"},
               "State: running\n"
               "LIBRARY      STATE\n"
               "./libnet.so  running\n"
               "libwifi.so   failed\n");
}

TEST_F(ContextCommandsTest, RegistrationsAreATable) {
  context.answer("GET /registrations", kRegistrations);
  expectOutput({"registrations"},
               "KIND   KEY  FUNCTION   LOCATION    COUNT  TOTAL MS  LONGEST MS  LAST MS  RESULT\n"
               "fd     7    read_line  hello.c:20  2      0.500     0.400       0.100    0\n"
               "timer  1    tick                   10     12.250    3.000       1.000    -1023\n");
}

TEST_F(ContextCommandsTest, StatisticsAreATable) {
  context.answer("GET /statistics", kStatistics);
  expectOutput({"stats"},
               "FIGURE       VALUE\n"
               "program      hello\n"
               "process      42\n"
               "running for  1 day 02:03:04\n"
               "clock        real\n"
               "callbacks    7\n"
               "busy ms      1.500\n"
               "longest ms   0.300\n"
               "events       2\n"
               "changes      3\n"
               "clients      1\n");
}

TEST_F(ContextCommandsTest, StatisticsWriteATrace) {
  context.answer("GET /statistics", kStatistics);
  context.answer("GET /trace", R"({"traceEvents":[]})");
  EXPECT_EQ(run({"stats", "--trace", folder.file("trace.json")}).status, 0);
  EXPECT_EQ(folder.read("trace.json"), R"({"traceEvents":[]})");
}

TEST_F(ContextCommandsTest, AFigureThatIsNoNumberIsAFailure) {
  context.answer("GET /statistics", R"({"pid":42,"program":"hello","uptimeMs":"long"})");
  expectFailure({"stats"}, 3, "the context's answer cannot be understood: \"uptimeMs\" is no number");
}

TEST_F(ContextCommandsTest, TopPutsTheCostliestFirst) {
  knowFigures();
  expectOutput({"top", "--count", "1"},
               "hello (42), running for 1 day 02:03:04, 7 callbacks, busy for 1.500 ms\n"
               "RECENT MS  RECENT COUNT  TOTAL MS  COUNT  LONGEST MS  KIND   KEY  FUNCTION\n"
               "12.250     10            12.250    10     3.000       timer  1    tick\n"
               "0.500      2             0.500     2      0.400       fd     7    read_line\n");
}

TEST_F(ContextCommandsTest, TopCountsFromSampleToSample) {
  knowFigures();
  const Outcome outcome = run({"top", "--count", "2", "--interval", "0.01"});
  EXPECT_NE(outcome.out.find("\n\nhello (42)"), std::string::npos);
  EXPECT_NE(outcome.out.find("0.000      0             12.250    10     3.000       timer"),
            std::string::npos);
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(ContextCommandsTest, TopPrintsALineOfJsonForEachSample) {
  context.answer("GET /statistics", R"({"pid":42})");
  context.answer("GET /registrations", R"({"registrations":[]})");
  const std::string line = "{\"statistics\":{\"pid\":42},\"registrations\":[]}\n";
  expectOutput({"top", "--count", "2", "--interval", "0.01", "--json"}, line + line);
}

TEST_F(ContextCommandsTest, AnInterruptEndsTopInGoodOrder) {
  knowFigures();
  const Outcome outcome =
      run({"top", "--interval", "3600"}, [](pid_t process, const Outcome&) { kill(process, SIGINT); });
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

}  // namespace
}  // namespace contextctl
