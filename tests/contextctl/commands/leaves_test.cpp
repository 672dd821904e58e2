// SPDX-License-Identifier: MIT
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class LeavesTest : public ContextctlTest {
 protected:
  static constexpr const char* kTree =
      R"({"leaves":[)"
      R"({"name":"Device.Hostname","type":"str","value":"router","computed":false},)"
      R"({"name":"Device.If.eth0.Mtu","type":"uint","value":"1500","computed":false},)"
      R"({"name":"Device.If.eth0.Key","type":"pwd","value":null,"computed":false},)"
      R"({"name":"Device.If.wlan0.Up","type":"bool","value":"1","computed":true}]})";
};

TEST_F(LeavesTest, GetPrintsTheValue) {
  context.answer("GET /leaf?name=Device.Hostname",
                 R"({"name":"Device.Hostname","type":"str","value":"router","computed":false})");
  expectOutput({"get", "Device.Hostname"}, "router\n");
}

TEST_F(LeavesTest, GetPrintsSeveralValuesInTheOrderOfTheNames) {
  context.answer("GET /leaf?name=B", R"({"name":"B","type":"str","value":"b","computed":false})");
  context.answer("GET /leaf?name=A", R"({"name":"A","type":"str","value":"a","computed":false})");
  expectOutput({"get", "B", "A"}, "b\na\n");
}

TEST_F(LeavesTest, GetPrintsTheExactBytesWithoutATerminal) {
  context.answer("GET /leaf?name=A",
                 R"({"name":"A","type":"str","value":"\u001b[1m\ttab","computed":false})");
  expectOutput({"get", "A"}, "\x1b[1m\ttab\n");
}

TEST_F(LeavesTest, GetEscapesControlCharactersOnATerminal) {
  context.answer("GET /leaf?name=A", R"({"name":"A","type":"str","value":"\u001b[1m","computed":false})");
  const Outcome outcome =
      runProgram(context.base(), {"script", "-qec", CPP2C_CONTEXTCTL " get A", "/dev/null"},
                 {"CPP2C_CONTROL=" + socket}, nullptr);
  EXPECT_EQ(outcome.out, "\\x1b[1m\r\n") << outcome.err;
}

TEST_F(LeavesTest, JsonHasNoControlCharacters) {
  context.answer("GET /leaf?name=A", "{\"value\":\"\\u001b\x7f\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0\"}");
  expectOutput({"get", "A", "--json"}, "{\"value\":\"\\u001b\\u007f\\u0080\\u009b\\u009f\xc2\xa0\"}\n");
}

TEST_F(LeavesTest, GetPrintsNothingIfOneNameIsUnknown) {
  context.answer("GET /leaf?name=A", R"({"name":"A","type":"str","value":"a","computed":false})");
  context.answer("GET /leaf?name=B", R"({"result":-1019,"error":"B: no such leaf"})", 404);
  expectFailure({"get", "A", "B"}, 1, "B: no such leaf");
}

TEST_F(LeavesTest, GetHidesAPassword) {
  context.answer("GET /leaf?name=Key", R"({"name":"Key","type":"pwd","value":null,"computed":false})");
  expectOutput({"get", "Key"}, "(hidden)\n");
}

TEST_F(LeavesTest, RevealAsksForPasswords) {
  context.answer("GET /leaf?name=Key&reveal=true",
                 R"({"name":"Key","type":"pwd","value":"secret","computed":false})");
  expectOutput({"--reveal", "get", "Key"}, "secret\n");
}

TEST_F(LeavesTest, NamesAreEscapedInTheRequest) {
  context.answer("GET /leaf?name=a%20b%26c%3D%C3%A9",
                 R"({"name":"","type":"str","value":"v","computed":false})");
  expectOutput({"get", "a b&c=\xc3\xa9"}, "v\n");
}

TEST_F(LeavesTest, SetSendsTheValueAndPrintsNothing) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "Device.Hostname", "a \"b\""}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"Device.Hostname","value":"a \"b\""})"});
}

TEST_F(LeavesTest, SetSendsAnEmptyValue) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A", ""}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"A","value":""})"});
}

TEST_F(LeavesTest, SetAcceptsANegativeNumber) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A", "-5"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"A","value":"-5"})"});
}

TEST_F(LeavesTest, SetAcceptsAnyValueAfterTwoDashes) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A", "--", "--json"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"A","value":"--json"})"});
}

TEST_F(LeavesTest, SetAcceptsAValueInBrackets) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A", "[1,2]"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"A","value":"[1,2]"})"});
}

TEST_F(LeavesTest, SetWithCreateAsksForTheInstance) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A.b.C", "1", "--create"}, "");
  EXPECT_EQ(context.requests(), Requests{R"(PUT /leaf {"name":"A.b.C","value":"1","create":true})"});
}

TEST_F(LeavesTest, SetPrintsTheAnswerAsJson) {
  context.answer("PUT /leaf", kDone);
  expectOutput({"set", "A", "1", "--json"}, "{\"result\":0}\n");
}

TEST_F(LeavesTest, SetReportsWhyAValueIsRefused) {
  context.answer("PUT /leaf", R"({"result":-1023,"error":"A: \"x\" is not a number"})", 400);
  expectFailure({"set", "A", "x"}, 1, "A: \"x\" is not a number");
}

TEST_F(LeavesTest, SetRejectsInvalidUtf8) {
  expectFailure({"set", "A", "\xff"}, 2, "a name or value is not valid UTF-8");
}

TEST_F(LeavesTest, ListPrintsATable) {
  context.answer("GET /tree", kTree);
  expectOutput({"list"},
               "NAME                TYPE             VALUE\n"
               "Device.Hostname     str              router\n"
               "Device.If.eth0.Mtu  uint             1500\n"
               "Device.If.eth0.Key  pwd              (hidden)\n"
               "Device.If.wlan0.Up  bool (computed)  1\n");
}

TEST_F(LeavesTest, ListAsksForAPrefix) {
  context.answer("GET /tree?name=Device.If.",
                 R"({"leaves":[{"name":"Device.If.A","type":"str","value":"a","computed":false}]})");
  expectOutput({"list", "Device.If."}, "NAME         TYPE  VALUE\nDevice.If.A  str   a\n");
}

TEST_F(LeavesTest, AnEmptyTreeIsListed) {
  context.answer("GET /tree", R"({"leaves":[]})");
  expectOutput({"list"}, "NAME  TYPE  VALUE\n");
}

TEST_F(LeavesTest, APrefixWithoutLeavesIsAFailure) {
  context.answer("GET /tree", kTree);
  context.answer("GET /tree?name=x", R"({"leaves":[]})");
  for (const char* command : {"list", "tree", "export"})
    expectFailure({command, "x"}, 1, "no leaf begins with \"x\"");
}

TEST_F(LeavesTest, ASimilarNameIsSuggested) {
  context.answer("GET /tree", kTree);
  const std::pair<const char*, const char*> names[] = {{"device.if.", "Device.If."},
                                                       {"if", "Device.If."},
                                                       {"If.eth1", "Device.If.eth0."},
                                                       {"Device.Hostname.", "Device.Hostname"},
                                                       {"hostnam", "Device.Hostname"},
                                                       {"Devise", "Device."},
                                                       {"Device.If.eth0.MTU", "Device.If.eth0.Mtu"}};
  for (const auto& [wrong, right] : names) {
    context.answer(std::string("GET /tree?name=") + wrong, R"({"leaves":[]})");
    expectFailure({"tree", wrong}, 1,
                  std::string("no leaf begins with \"") + wrong + "\"; did you mean \"" + right + "\"?");
  }
}

TEST_F(LeavesTest, ALeafOfAMissingInstanceHasNoValue) {
  context.answer("GET /leaf?name=Device.If.eth9.Mtu",
                 R"({"name":"Device.If.eth9.Mtu","type":"uint","value":"1500","computed":false})");
  context.answer("GET /instances?object=Device.If.eth9.", R"({"result":-1019,"error":"no object"})", 404);
  context.answer("GET /instances?object=Device.If.", R"({"instances":["Device.If.eth0."]})");
  expectFailure({"get", "Device.If.eth9.Mtu"}, 1, "the instance \"Device.If.eth9.\" does not exist");
  expectFailure({"get", "Device.If.eth9.Mtu", "--json"}, 1,
                "the instance \"Device.If.eth9.\" does not exist");
}

TEST_F(LeavesTest, ALeafOfAnInstanceHasAValue) {
  context.answer("GET /leaf?name=Device.If.eth0.Mtu",
                 R"({"name":"Device.If.eth0.Mtu","type":"uint","value":"1500","computed":false})");
  context.answer("GET /instances?object=Device.If.eth0.", R"({"result":-1019,"error":"no object"})", 404);
  context.answer("GET /instances?object=Device.If.", R"({"instances":["Device.If.eth0."]})");
  expectOutput({"get", "Device.If.eth0.Mtu"}, "1500\n");
}

TEST_F(LeavesTest, ALeafOfAnObjectHasAValue) {
  context.answer("GET /leaf?name=Device.Settings.Host",
                 R"({"name":"Device.Settings.Host","type":"str","value":"a","computed":false})");
  context.answer("GET /instances?object=Device.Settings.", R"({"instances":["Device.Settings."]})");
  expectOutput({"get", "Device.Settings.Host"}, "a\n");
}

TEST_F(LeavesTest, ListEscapesControlCharacters) {
  context.answer("GET /tree",
                 R"({"leaves":[{"name":"A","type":"str","value":"\u001b[2J\n\u009b","computed":false}]})");
  expectOutput({"list"}, "NAME  TYPE  VALUE\nA     str   \\x1b[2J\\n\\x9b\n");
}

TEST_F(LeavesTest, ListPrintsTheAnswerAsJson) {
  context.answer("GET /tree", R"({ "leaves" : [ {"name":"A","type":"str","value":"1","computed":false} ] })");
  expectOutput({"list", "--json"},
               "{\"leaves\":[{\"name\":\"A\",\"type\":\"str\",\"value\":\"1\",\"computed\":false}]}\n");
}

TEST_F(LeavesTest, TreeIndentsLeavesBelowTheirCommonPrefix) {
  context.answer("GET /tree", kTree);
  expectOutput({"tree"},
               "Device\n"
               "  Hostname = router  [str]\n"
               "  If\n"
               "    eth0\n"
               "      Mtu = 1500  [uint]\n"
               "      Key = (hidden)  [pwd]\n"
               "    wlan0\n"
               "      Up = 1  [bool (computed)]\n");
}

}  // namespace
}  // namespace contextctl
