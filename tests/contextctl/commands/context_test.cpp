// SPDX-License-Identifier: MIT
#include <filesystem>

#include "tests/contextctl/commands/answers.h"
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

using ContextCommandsTest = ContextctlTest;

TEST_F(ContextCommandsTest, SavePrintsNothing) {
  context.answer("POST /save", kDone);
  expectOutput({"save"}, "");
  EXPECT_EQ(context.requests(), Requests{"POST /save {}"});
}

TEST_F(ContextCommandsTest, SaveReportsWhyItFailed) {
  context.answer("POST /save", R"({"result":-1022,"error":"no state file"})", 503);
  expectFailure({"save"}, 1, "no state file");
}

TEST_F(ContextCommandsTest, StopWaitsForTheEnd) {
  context.answer("POST /stop", kDone);
  expectFailure({"stop", "--timeout", "0.2"}, 3, "the program at " + socket + " has not ended within 0.2 s");
}

TEST_F(ContextCommandsTest, StopEndsWhenTheSocketIsGone) {
  context.answer("POST /stop", kDone);
  context.onAnswered("POST /stop", [&] { std::filesystem::remove(socket); });
  expectOutput({"stop"}, "");
}

TEST_F(ContextCommandsTest, StopEndsWhenAnotherProgramListens) {
  const std::string successor_socket = folder.file("successor.sock");
  const ContextDouble successor(successor_socket);
  context.answer("POST /stop", kDone);
  context.onAnswered("POST /stop", [&] { std::filesystem::rename(successor_socket, socket); });
  expectOutput({"stop"}, "");
}

TEST_F(ContextCommandsTest, StopNeedNotWait) {
  context.answer("POST /stop", kDone);
  expectOutput({"stop", "--no-wait"}, "");
}

TEST_F(ContextCommandsTest, StopPrintsTheAnswerAsJson) {
  context.answer("POST /stop", kDone);
  expectOutput({"stop", "--no-wait", "--json"}, "{\"result\":0}\n");
}

TEST_F(ContextCommandsTest, ModulesArePrintedAsATable) {
  context.answer("GET /modules", R"({"modules":[{"library":"./libnet.so","state":"running"},)"
                                 R"({"library":"libwifi.so","state":"failed"}],"state":"running"})");
  expectOutput({"modules"},
               "State: running\n"
               "LIBRARY      STATE\n"
               "./libnet.so  running\n"
               "libwifi.so   failed\n");
}

TEST_F(ContextCommandsTest, RegistrationsArePrintedAsATable) {
  context.answer("GET /registrations", kRegistrations);
  expectOutput({"registrations"},
               "KIND   KEY  FUNCTION   LOCATION    COUNT  TOTAL MS  LONGEST MS  LAST MS  RESULT\n"
               "fd     7    read_line  hello.c:20  2      0.500     0.400       0.100    0\n"
               "timer  1    tick                   10     12.250    3.000       1.000    -1023\n");
}

TEST_F(ContextCommandsTest, StatisticsArePrintedAsATable) {
  context.answer("GET /statistics", kStatistics);
  expectOutput({"stats"},
               "FIGURE       VALUE\n"
               "program      hello\n"
               "process      42\n"
               "running for  1 day 02:03:04\n"
               "clock        real\n"
               "calls        7\n"
               "busy ms      1.500\n"
               "longest ms   0.300\n"
               "events       2\n"
               "changes      3\n"
               "clients      1\n");
}

TEST_F(ContextCommandsTest, StatsWritesATrace) {
  context.answer("GET /statistics", kStatistics);
  context.answer("GET /trace", R"({"traceEvents":[]})");
  EXPECT_EQ(run({"stats", "--trace", folder.file("trace.json")}).status, 0);
  EXPECT_EQ(folder.read("trace.json"), R"({"traceEvents":[]})");
}

TEST_F(ContextCommandsTest, AnInfiniteStatisticIsAFailure) {
  context.answer("GET /statistics", R"({"pid":42,"program":"hello","uptimeMs":"inf"})");
  expectFailure({"stats"}, 3, "invalid answer from the context: \"uptimeMs\" is not a number");
}

TEST_F(ContextCommandsTest, AStatisticThatIsNotANumberIsAFailure) {
  context.answer("GET /statistics", R"({"pid":42,"program":"hello","uptimeMs":"long"})");
  expectFailure({"stats"}, 3, "invalid answer from the context: \"uptimeMs\" is not a number");
}

}  // namespace
}  // namespace contextctl
