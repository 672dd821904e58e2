// SPDX-License-Identifier: MIT
// Scripted faults as a C program meets them.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/host/c_interface/c_interface_fixture.h"
#include "tests/support/printed_text.h"

using namespace host;

namespace {

using Records = std::vector<std::string>;
using Results = std::vector<int>;

const char kTree[] =
    R"({"objects": [{"number": 1, "name": "A.", "attribute": 5,
                     "leaves": {"X": {"type": "int", "default": 7}}}]})";

int ignoreTimer() {
  return 0;
}

int ignoreEvent(void* user, const char* /*event*/, const char* data, const char* /*source*/) {
  *static_cast<std::string*>(user) = data;
  return 0;
}

class CScriptTest : public CInterfaceFixture {
 protected:
  int initWithSteps(const std::string& steps, std::vector<std::string> more = {"--clock", "virtual"}) {
    more.insert(more.end(), {"--script", folder_.write("script.json", R"({"steps": [)" + steps + "]}")});
    return initWith(kTree, std::move(more));
  }

  static int readX() {
    std::int32_t value = 0;
    const int result = c_cfm_get_value("A.X", "int", &value, sizeof value);
    EXPECT_EQ(value, result == C_RESULT_OK ? 7 : 0);
    return result;
  }

  static int writeX() {
    const std::int32_t value = 7;
    return c_cfm_set_value("A.X", 0, "int", &value, sizeof value);
  }

  template <typename Call>
  static Results repeat(int times, Call call) {
    Results results;
    for (int i = 0; i < times; i++) results.push_back(call());
    return results;
  }
};

TEST_F(CScriptTest, ThirdReadOfALeafFails) {
  initWithSteps(R"({"call": "getNode", "nth": 3, "answer": null})");
  EXPECT_EQ(repeat(4, readX), (Results{0, 0, C_RESULT_NOT_INIT, 0}));
  EXPECT_EQ(records(), Records{"info script: getNode, call 3: answers null"});
}

TEST_F(CScriptTest, WriteAnswersTheCodesOfTheScript) {
  initWithSteps(R"({"call": "setValue", "nth": 2, "times": 2, "answer": -1018})");
  EXPECT_EQ(repeat(4, writeX), (Results{0, C_RESULT_NO_MEMORY, C_RESULT_NO_MEMORY, 0}));
}

TEST_F(CScriptTest, AttributeTimerAndCommandsAnswerTheCodesOfTheScript) {
  initWithSteps(R"(
      {"call": "getAttr", "nth": 1, "answer": -1019},
      {"call": "setAttr", "nth": 1, "answer": -1018},
      {"call": "setTimer", "nth": 1, "answer": -1021},
      {"call": "systemCall2", "nth": 1, "answer": 127},
      {"call": "popenCall", "nth": 1, "answer": -5},
      {"call": "addFd", "nth": 1, "answer": -1021},
      {"call": "save", "nth": 1, "answer": -1020},
      {"call": "load", "nth": 1, "answer": -1017})");
  char format[] = "%s";
  std::int32_t word = 0;
  EXPECT_EQ(c_cfm_get_attr(1, &word), C_RESULT_NOT_FOUND);
  EXPECT_EQ(c_cfm_set_attr(1, 6), C_RESULT_NO_MEMORY);
  EXPECT_EQ(c_context_set_timer(1, 1, ignoreTimer), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(c_system_call2(format, "true"), 127);
  EXPECT_EQ(c_popen_call(format, "true"), -5);
  EXPECT_EQ(c_loop_add_fd(0, C_LOOP_READ, nullptr, nullptr), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_TIMEOUT);
  EXPECT_EQ(c_context_load(), C_RESULT_REDUNDANT);
  EXPECT_EQ(records().size(), 8U);
  EXPECT_EQ(c_cfm_get_attr(1, &word), C_RESULT_OK);
  EXPECT_EQ(word, 5);
}

TEST_F(CScriptTest, ServicesAreMissing) {
  initWithSteps(R"(
      {"call": "getCfm", "nth": 1, "answer": null},
      {"call": "getLoop", "nth": 1, "answer": null},
      {"call": "getHeartbeat", "nth": 1, "answer": null},
      {"call": "getLog", "nth": 1, "answer": null},
      {"call": "getEvent", "nth": 1, "answer": null})");
  EXPECT_EQ(readX(), C_RESULT_NOT_INIT);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_OK);
  c_log_record("m", C_LOG_INFO, "dropped");
  c_event_notify("up", "dropped");
  EXPECT_EQ(
      records(),
      (Records{"info script: getCfm, call 1: answers null", "info script: getLoop, call 1: answers null",
               "info script: getHeartbeat, call 1: answers null", "info script: getLog, call 1: answers null",
               "info script: getEvent, call 1: answers null"}));
  EXPECT_EQ(readX(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_PARAM);
}

TEST_F(CScriptTest, ContextIsUnavailableForANumberOfCalls) {
  initWithSteps(R"({"call": "getCfm", "nth": 2, "unavailable": {"calls": 2}})");
  // Each refused read also wants to send a diagnostic, which is the second call.
  EXPECT_EQ(repeat(3, readX), (Results{0, C_RESULT_NOT_INIT, 0}));
  EXPECT_EQ(records(), (Records{"info script: the context is unavailable for 2 calls",
                                "info script: getCfm, call 2: answers null",
                                "info script: debugOut, call 1: answers -1022"}));
}

TEST_F(CScriptTest, ObserverThatIsTakenBackWithAFaultIsNotCalledAnyMore) {
  initWithSteps(R"({"call": "unregistEventObserver", "nth": 1, "answer": -1018})");
  std::string data;
  c_event_regist_observer("up", ignoreEvent, &data);
  c_event_unregist_observer("up", ignoreEvent);
  c_event_notify("up", "eth0");
  EXPECT_EQ(data, "");
}

TEST_F(CScriptTest, LoopRunsThroughTheScriptOnAVirtualClock) {
  std::string data;
  EXPECT_EQ(initWithSteps(R"(
      {"atMs": 5000, "set": {"A.X": 8}},
      {"atMs": 6000, "event": "up", "data": "eth0"},
      {"atMs": 86400000, "stop": true})"),
            C_RESULT_OK);
  c_event_regist_observer("up", ignoreEvent, &data);
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_EQ(data, "eth0");
  EXPECT_EQ(records(),
            (Records{"info script: sets A.X", "info script: sends event up", "info script: stops the loop"}));
}

TEST_F(CScriptTest, ScriptRunsOnTheRealClock) {
  initWithSteps(R"({"atMs": 5, "stop": true})", {});
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_EQ(records(), Records{"info script: stops the loop"});
}

TEST_F(CScriptTest, MistakeInTheScriptIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(initWithSteps(R"({"call": "getNode", "nth": 1, "answer": 5})"), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(),
            folder_.file("script.json") + ": /steps/0/answer: getNode can only answer null\n");
}

TEST_F(CScriptTest, MissingScriptIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(init({"--script", "/no/such.json"}), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(printed.standardError(), "/no/such.json: cannot be read: No such file or directory\n");
}

}  // namespace
