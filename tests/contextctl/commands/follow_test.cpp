// SPDX-License-Identifier: MIT
#include <signal.h>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class FollowTest : public ContextctlTest {
 protected:
  static constexpr const char* kChange =
      "data: "
      "{\"time\":\"2024-05-01T10:00:00.000Z\",\"object\":\"Device.If.\",\"instance\":\"Device.If.eth0.\","
      "\"operation\":\"changed\",\"leaf\":\"Mtu\",\"value\":\"1400\"}\n\n";
  static constexpr const char* kChangeLine = "2024-05-01T10:00:00.000Z  changed  Device.If.eth0.Mtu  1400\n";
  static constexpr const char* kDeletion =
      "data: "
      "{\"time\":\"2024-05-01T10:00:01.000Z\",\"object\":\"Device.If.\",\"instance\":\"Device.If.eth0.\","
      "\"operation\":\"deleted\",\"leaf\":\"\",\"value\":null}\n\n";

  std::string closed() const { return "contextctl: the context at " + socket + " closed the connection\n"; }
};

TEST_F(FollowTest, ChangesAreFollowed) {
  context.stream("GET /changes", {kChange, kDeletion});
  expectOutput({"follow", "changes", "--count", "2"},
               std::string(kChangeLine) + "2024-05-01T10:00:01.000Z  deleted  Device.If.eth0.\n");
}

TEST_F(FollowTest, ChangesAreRequestedByPrefix) {
  context.stream("GET /changes?name=Device.If.", {kChange});
  expectOutput({"follow", "changes", "Device.If.", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, ChangesIncludePasswordsWithReveal) {
  context.stream("GET /changes?reveal=true", {kChange});
  expectOutput({"follow", "changes", "--reveal", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, ChangesHideAPassword) {
  context.stream("GET /changes", {"data: {\"time\":\"T\",\"object\":\"Device.\",\"instance\":\"Device.\","
                                  "\"operation\":\"changed\",\"leaf\":\"Key\",\"value\":null}\n\n"});
  expectOutput({"follow", "changes", "--count", "1"}, "T  changed  Device.Key  (hidden)\n");
}

TEST_F(FollowTest, CommentsAreSkipped) {
  context.stream("GET /changes", {": ping\n\n", kChange, ": ping\n\n"});
  expectOutput({"follow", "changes", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, ItemsMayArriveInPieces) {
  const std::string change = kChange;
  context.stream("GET /changes", {change.substr(0, 3), change.substr(3, 50), change.substr(53)});
  expectOutput({"follow", "changes", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, CountLimitsItemsThatArriveTogether) {
  context.stream("GET /changes", {std::string(kChange) + kChange + kChange});
  expectOutput({"follow", "changes", "--count", "2"}, std::string(kChangeLine) + kChangeLine);
}

// SIGPIPE ends the program, as in "contextctl follow changes | head -1".
TEST_F(FollowTest, EndsSilentlyWhenNobodyReadsItsOutput) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  context.stream("GET /changes", {kChange});
  const std::string command = CPP2C_CONTEXTCTL " follow changes >&" + std::to_string(ends[1]);
  expectOutcome(
      runProgram(context.base(), {"bash", "-c", "exec " + command}, {"CPP2C_CONTROL=" + socket}, nullptr), -1,
      "", "");
  close(ends[1]);
}

TEST_F(FollowTest, JsonPrintsOneLinePerItem) {
  context.stream("GET /changes", {kDeletion});
  expectOutput(
      {"follow", "changes", "--count", "1", "--json"},
      "{\"time\":\"2024-05-01T10:00:01.000Z\",\"object\":\"Device.If.\",\"instance\":\"Device.If.eth0.\","
      "\"operation\":\"deleted\",\"leaf\":\"\",\"value\":null}\n");
}

TEST_F(FollowTest, CtrlCEndsItWithSuccess) {
  context.stream("GET /changes", {kChange});
  const Outcome outcome =
      run({"follow", "changes"}, [](pid_t process, const Outcome&) { kill(process, SIGINT); });
  expectOutcome(outcome, 0, kChangeLine, "");
}

TEST_F(FollowTest, AClosedConnectionIsAFailure) {
  context.streamAndClose("GET /changes", {kChange});
  expectOutcome(run({"follow", "changes"}), 3, kChangeLine, closed());
}

TEST_F(FollowTest, ARefusedStreamIsAFailure) {
  context.answer("GET /changes", R"({"result":-1023,"error":"too many clients"})", 503);
  expectFailure({"follow", "changes"}, 1, "too many clients");
}

TEST_F(FollowTest, AStreamThatDoesNotBeginIsAFailure) {
  context.keepSilent("GET /changes");
  expectFailure({"follow", "changes", "--timeout", "0.2"}, 3, "no answer from " + socket + " within 0.2 s");
}

TEST_F(FollowTest, AnItemThatIsNotJsonIsAFailure) {
  context.stream("GET /changes", {"data: nonsense\n\n"});
  expectFailure({"follow", "changes"}, 3, "invalid answer from the context: not a JSON object");
}

TEST_F(FollowTest, AnItemWithoutAMemberIsAFailure) {
  context.stream("GET /log", {"data: {\"time\":\"T\"}\n\n"});
  expectFailure({"follow", "log"}, 3, "invalid answer from the context: no member \"level\"");
}

TEST_F(FollowTest, EventsAreSent) {
  context.answer("POST /events", kDone);
  expectOutput({"event", "send", "link.down", "eth0"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(POST /events {"event":"link.down","data":"eth0"})"});
}

TEST_F(FollowTest, AnEventMayHaveNoData) {
  context.answer("POST /events", kDone);
  expectOutput({"event", "send", "reload"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(POST /events {"event":"reload","data":""})"});
}

TEST_F(FollowTest, EventsAreFollowed) {
  context.stream(
      "GET /events?event=link.down",
      {"data: {\"time\":\"T\",\"event\":\"link.down\",\"data\":\"a\\nb\",\"source\":\"hello\"}\n\n"});
  expectOutput({"follow", "events", "link.down", "--count", "1"}, "T  link.down  a\\nb  hello\n");
}

TEST_F(FollowTest, WatchIsAnAliasOfFollowChanges) {
  context.stream("GET /changes?name=Device.If.", {kChange});
  expectOutput({"watch", "Device.If.", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, EventFollowIsAnAliasOfFollowEvents) {
  context.stream("GET /events?event=up",
                 {"data: {\"time\":\"T\",\"event\":\"up\",\"data\":\"\",\"source\":\"s\"}\n\n"});
  expectOutput({"event", "follow", "up", "--count", "1"}, "T  up  s\n");
}

TEST_F(FollowTest, LogIsAnAliasOfFollowLog) {
  context.stream("GET /log",
                 {"data: {\"time\":\"T\",\"level\":\"info\",\"module\":\"\",\"text\":\"up\"}\n\n"});
  expectOutput({"log", "--count", "1"}, "T  info  up\n");
}

TEST_F(FollowTest, ACountThatIsNotANumberIsWrongUsage) {
  expectFailure({"follow", "log", "--count", "x"}, 2, "--count: \"x\" is not a positive number");
}

TEST_F(FollowTest, ACountThatIsNotAnIntegerIsWrongUsage) {
  expectFailure({"follow", "log", "--count", "1.5"}, 2, "--count: \"1.5\" is not a 32-bit integer");
}

TEST_F(FollowTest, ACountThatIsTooLargeIsWrongUsage) {
  expectFailure({"follow", "log", "--count", "2147483648"}, 2,
                "--count: \"2147483648\" is not a 32-bit integer");
}

TEST_F(FollowTest, TheLogIsFollowed) {
  context.stream(
      "GET /log",
      {"data: {\"time\":\"T\",\"level\":\"info\",\"module\":\"net\",\"text\":\"up \\u001b[0m\"}\n\n"});
  expectOutput({"follow", "log", "--count", "1"}, "T  info  net  up \\x1b[0m\n");
}

}  // namespace
}  // namespace contextctl
