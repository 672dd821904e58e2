// SPDX-License-Identifier: MIT
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

using ConnectionTest = ContextctlTest;

TEST_F(ConnectionTest, NoContextIsAFailure) {
  expectFailure({"--control", "/nowhere.sock", "save"}, 3,
                "no context at /nowhere.sock: No such file or directory");
  expectFailure({"--control", "/nowhere.sock", "follow", "log"}, 3,
                "no context at /nowhere.sock: No such file or directory");
}

TEST_F(ConnectionTest, ASocketWithoutAListenerIsAFailure) {
  const std::string file = folder.write("plain", "");
  expectFailure({"--control", file, "save"}, 3, "no context at " + file + ": Connection refused");
}

TEST_F(ConnectionTest, TheOptionOverridesTheEnvironment) {
  context.answer("POST /save", kDone);
  expectOutcome(runIn({"CPP2C_CONTROL=/nowhere.sock"}, {"--control", socket, "save"}), 0, "", "");
}

TEST_F(ConnectionTest, TheRuntimeFolderOfTheUserIsTheDefault) {
  expectOutcome(runIn({"CPP2C_CONTROL", "XDG_RUNTIME_DIR=/nowhere"}, {"save"}), 3, "",
                "contextctl: no context at /nowhere/cpp2c.sock: No such file or directory\n");
}

TEST_F(ConnectionTest, NoNameOfASocketIsWrongUsage) {
  expectFailure({"--control", "", "save"}, 2,
                "no socket is named; pass --control PATH, or set CPP2C_CONTROL or XDG_RUNTIME_DIR");
}

TEST_F(ConnectionTest, ANameThatIsTooLongForASocketIsWrongUsage) {
  const std::string name(108, 'x');
  expectFailure({"--control", name, "save"}, 2, name + ": the path of a socket has at most 107 bytes");
}

TEST_F(ConnectionTest, AProxyOfTheEnvironmentIsIgnored) {
  context.answer("POST /save", kDone);
  expectOutcome(runIn({"CPP2C_CONTROL=" + socket, "http_proxy=http://127.0.0.1:1/"}, {"save"}), 0, "", "");
}

TEST_F(ConnectionTest, NoAnswerInTimeIsAFailure) {
  context.keepSilent("POST /save");
  expectFailure({"save", "--timeout", "0.2"}, 3, "no answer from " + socket + " within 0.2 s");
}

TEST_F(ConnectionTest, AnAnswerThatIsNotJsonIsAFailure) {
  context.answer("GET /modules", "<html>");
  expectFailure({"modules"}, 3, "invalid answer from the context: not a JSON object");
}

TEST_F(ConnectionTest, AnAnswerWithoutItsArrayIsAFailure) {
  context.answer("GET /tree", "{}");
  expectFailure({"list"}, 3, "invalid answer from the context: no member \"leaves\"");
}

TEST_F(ConnectionTest, ARefusedUserIsNoAnswer) {
  context.answer("POST /save", R"({"result":-1023,"error":"you are not my user"})", 403);
  expectFailure({"save"}, 3, "you are not my user");
}

TEST_F(ConnectionTest, AnErrorWithoutAMessageIsReportedByItsStatus) {
  context.answer("POST /save", "", 500);
  expectFailure({"save"}, 3, "HTTP status 500");
}

TEST_F(ConnectionTest, TheMessageOfARefusalIsPrintable) {
  context.answer("POST /save", R"({"result":-1023,"error":"a\n\u001b[2Jb"})", 400);
  expectFailure({"save"}, 1, "a\\n\\x1b[2Jb");
}

TEST_F(ConnectionTest, EveryRefusalHasTheSameExitStatus) {
  for (const int status : {400, 404, 409, 413, 503}) {
    context.answer("POST /save", R"({"result":-1,"error":"no"})", status);
    expectFailure({"save"}, 1, "no");
  }
}

TEST_F(ConnectionTest, OtherStatusesAreNoAnswer) {
  for (const int status : {201, 401, 405, 408, 412, 500, 502}) {
    context.answer("POST /save", R"({"result":-1,"error":"no"})", status);
    expectFailure({"save"}, 3, "no");
  }
}

TEST_F(ConnectionTest, OutputThatCannotBeWrittenIsAFailure) {
  const std::string command = CPP2C_CONTEXTCTL " --help > /dev/full 2> " + folder.file("error");
  const int status = std::system(command.c_str());
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_EQ(folder.read("error"), "contextctl: cannot write the output\n");
}

}  // namespace
}  // namespace contextctl
