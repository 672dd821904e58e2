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

  std::string gone() const { return "contextctl: the context at " + socket + " has gone away\n"; }
};

TEST_F(FollowTest, WatchPrintsEachChange) {
  context.stream("GET /changes", {kChange, kDeletion});
  expectOutput({"watch", "--count", "2"},
               std::string(kChangeLine) + "2024-05-01T10:00:01.000Z  deleted  Device.If.eth0.\n");
}

TEST_F(FollowTest, WatchAsksForAPrefix) {
  context.stream("GET /changes?name=Device.If.", {kChange});
  expectOutput({"watch", "Device.If.", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, WatchAsksForPasswordsOnlyIfToldTo) {
  context.stream("GET /changes?reveal=true", {kChange});
  expectOutput({"watch", "--reveal", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, WatchHidesAPassword) {
  context.stream("GET /changes", {"data: {\"time\":\"T\",\"object\":\"Device.\",\"instance\":\"Device.\","
                                  "\"operation\":\"changed\",\"leaf\":\"Key\",\"value\":null}\n\n"});
  expectOutput({"watch", "--count", "1"}, "T  changed  Device.Key  (hidden)\n");
}

TEST_F(FollowTest, CommentsAreNoItems) {
  context.stream("GET /changes", {": ping\n\n", kChange, ": ping\n\n"});
  expectOutput({"watch", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, ItemsMayArriveInPieces) {
  const std::string change = kChange;
  context.stream("GET /changes", {change.substr(0, 3), change.substr(3, 50), change.substr(53)});
  expectOutput({"watch", "--count", "1"}, kChangeLine);
}

TEST_F(FollowTest, ItemsThatArriveTogetherDoNotOutrunTheCount) {
  context.stream("GET /changes", {std::string(kChange) + kChange + kChange});
  expectOutput({"watch", "--count", "2"}, std::string(kChangeLine) + kChangeLine);
}

TEST_F(FollowTest, JsonPrintsOneLineForEachItem) {
  context.stream("GET /changes", {kDeletion});
  expectOutput(
      {"watch", "--count", "1", "--json"},
      "{\"time\":\"2024-05-01T10:00:01.000Z\",\"object\":\"Device.If.\",\"instance\":\"Device.If.eth0.\","
      "\"operation\":\"deleted\",\"leaf\":\"\",\"value\":null}\n");
}

TEST_F(FollowTest, AnInterruptEndsItInGoodOrder) {
  context.stream("GET /changes", {kChange});
  const Outcome outcome = run({"watch"}, [](pid_t process, const Outcome&) { kill(process, SIGINT); });
  expectOutcome(outcome, 0, kChangeLine, "");
}

TEST_F(FollowTest, AContextThatGoesAwayIsAFailure) {
  context.streamAndLeave("GET /changes", {kChange});
  expectOutcome(run({"watch"}), 3, kChangeLine, gone());
}

TEST_F(FollowTest, ARefusedStreamIsAFailure) {
  context.answer("GET /changes", R"({"result":-1023,"error":"too many clients"})", 503);
  expectFailure({"watch"}, 1, "too many clients");
}

TEST_F(FollowTest, AStreamThatDoesNotBeginIsAFailure) {
  context.keepSilent("GET /changes");
  expectFailure({"watch", "--timeout", "0.2"}, 3, "no answer from " + socket + " within 0.2 s");
}

TEST_F(FollowTest, AnItemThatIsNoJsonIsAFailure) {
  context.stream("GET /changes", {"data: nonsense\n\n"});
  expectFailure({"watch"}, 3, "the context's answer cannot be understood: no JSON object");
}

TEST_F(FollowTest, AnItemThatLacksAMemberIsAFailure) {
  context.stream("GET /log", {"data: {\"time\":\"T\"}\n\n"});
  expectFailure({"log"}, 3, "the context's answer cannot be understood: no \"level\"");
}

TEST_F(FollowTest, EventsAreSent) {
  context.answer("POST /events", kDone);
  expectOutput({"event", "send", "link.down", "eth0"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(POST /events {"event":"link.down","data":"eth0"})"});
}

TEST_F(FollowTest, EventsAreFollowed) {
  context.stream(
      "GET /events?event=link.down",
      {"data: {\"time\":\"T\",\"event\":\"link.down\",\"data\":\"a\\nb\",\"source\":\"hello\"}\n\n"});
  expectOutput({"event", "follow", "link.down", "--count", "1"}, "T  link.down  a\\nb  hello\n");
}

TEST_F(FollowTest, TheLogIsFollowed) {
  context.stream(
      "GET /log",
      {"data: {\"time\":\"T\",\"level\":\"info\",\"module\":\"net\",\"text\":\"up \\u001b[0m\"}\n\n"});
  expectOutput({"log", "--count", "1"}, "T  info  net  up \\x1b[0m\n");
}

}  // namespace
}  // namespace contextctl
