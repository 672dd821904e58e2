// SPDX-License-Identifier: MIT
// A hostile context cannot exhaust the memory, the stack or the patience of the client.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <string>

#include "tests/contextctl/contextctl_test.h"
#include "tests/host/support/child_process.h"
#include "tests/support/valgrind.h"

namespace contextctl {
namespace {

std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; i++) result += text;
  return result;
}

// Answers the first client with `begin`, and with `more` again and again until it closes.
void answerWithoutEnd(const std::string& path, int output, const std::string& begin,
                      const std::string& more) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  unlink(path.c_str());
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return;
  if (listen(listener, 1) != 0) return;
  dprintf(output, "listening\n");
  const int client = accept(listener, nullptr, nullptr);
  const std::string bytes = repeated(more, 10000);
  std::string part = begin;
  while (send(client, part.data(), part.size(), MSG_NOSIGNAL) > 0) part = bytes;
}

class LimitsTest : public ContextctlTest {
 protected:
  static constexpr const char* kHead = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";

  void expectEnd(const std::vector<std::string>& arguments, const std::string& begin, const std::string& more,
                 const std::string& reason) {
    const std::string endless = folder.file("endless.sock");
    const host::ChildProcess server([&](int output) { answerWithoutEnd(endless, output, begin, more); });
    ASSERT_EQ(server.line(), "listening");
    expectOutcome(runIn({"CPP2C_CONTROL=" + endless}, arguments), 3, "",
                  "contextctl: invalid answer from the context: " + reason + '\n');
  }
};

TEST_F(LimitsTest, AnAnswerWithoutAnEndIsRejected) {
  expectEnd({"tree"}, kHead + std::string("\r\n{"), " ", "it is larger than 64 MiB");
}

TEST_F(LimitsTest, ARefusalOfAStreamWithoutAnEndIsRejected) {
  expectEnd({"follow", "log"}, "HTTP/1.1 503 No\r\n\r\n{", " ", "it is larger than 64 MiB");
}

TEST_F(LimitsTest, HeadersWithoutAnEndAreRejected) {
  expectEnd({"tree"}, kHead, "A: b\r\n", "its headers are larger than 64 KiB");
  expectEnd({"follow", "log"}, kHead, "A: b\r\n", "its headers are larger than 64 KiB");
}

TEST_F(LimitsTest, ALineOfAStreamWithoutAnEndIsRejected) {
  expectEnd({"follow", "log"}, kHead + std::string("\r\ndata: "), "x",
            "an item of the stream is larger than 16 MiB");
}

TEST_F(LimitsTest, AnItemOfAStreamWithoutAnEndIsRejected) {
  if (underValgrind()) GTEST_SKIP() << "millions of values and bytes take minutes";
  expectEnd({"follow", "log"}, kHead + std::string("\r\n"), "data: x\n",
            "an item of the stream is larger than 16 MiB");
}

TEST_F(LimitsTest, ADeeplyNestedAnswerIsRejected) {
  context.answer("GET /tree", R"({"leaves":)" + repeated("[", 80000) + repeated("]", 80000) + '}');
  expectFailure({"tree"}, 3, "invalid answer from the context: it is nested more than 64 levels deep");
}

TEST_F(LimitsTest, ADeeplyNestedItemIsRejected) {
  context.stream("GET /log", {"data: " + repeated(R"({"a":)", 80000) + "\n\n"});
  expectFailure({"follow", "log"}, 3,
                "invalid answer from the context: it is nested more than 64 levels deep");
}

TEST_F(LimitsTest, ADeeplyNestedRefusalHasNoMessage) {
  context.answer("POST /save", repeated("[", 80000), 400);
  expectFailure({"save"}, 1, "HTTP status 400");
}

TEST_F(LimitsTest, NestingUpToTheLimitIsRead) {
  context.answer("GET /modules",
                 R"({"modules":[],"state":"s","a":)" + repeated("[", 63) + repeated("]", 63) + '}');
  EXPECT_EQ(run({"modules"}).status, 0);
}

TEST_F(LimitsTest, TooManyValuesAreRejected) {
  if (underValgrind()) GTEST_SKIP() << "millions of values and bytes take minutes";
  context.answer("GET /tree", R"({"leaves":[0)" + repeated(",0", 2000000) + "]}");
  expectFailure({"tree"}, 3, "invalid answer from the context: it has more than 2000000 values");
}

TEST_F(LimitsTest, TooManyMembersAreRejected) {
  std::string members = R"("a":0)";
  for (int i = 0; i < 1000; i++) members += ",\"" + std::to_string(i) + "\":0";
  context.answer("GET /modules", '{' + members + '}');
  expectFailure({"modules"}, 3,
                "invalid answer from the context: it has more than 1000 members in one object");
}

TEST_F(LimitsTest, MembersUpToTheLimitAreRead) {
  std::string members = R"("modules":[],"state":"s")";
  for (int i = 0; i < 998; i++) members += ",\"" + std::to_string(i) + "\":0";
  context.answer("GET /modules", '{' + members + '}');
  EXPECT_EQ(run({"modules"}).status, 0);
}

TEST_F(LimitsTest, MembersAreCountedForEachObject) {
  std::string members = R"("a":0)";
  for (int i = 0; i < 900; i++) members += ",\"" + std::to_string(i) + "\":0";
  context.answer("GET /modules",
                 R"({"modules":[],"state":"s","a":{)" + members + R"(},"b":{)" + members + "}}");
  EXPECT_EQ(run({"modules"}).status, 0);
}

}  // namespace
}  // namespace contextctl
