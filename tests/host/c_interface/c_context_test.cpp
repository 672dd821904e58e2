// SPDX-License-Identifier: MIT
// Start, loop and end of a C program on the host context.
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"
#include "tests/support/printed_text.h"

using namespace host;

namespace {

using Records = std::vector<std::string>;

class CContextTest : public CInterfaceFixture {
 protected:
  CContextTest() {
    if (pipe2(ends_, O_CLOEXEC) != 0) ADD_FAILURE() << "no pipe";
  }
  ~CContextTest() override {
    close(ends_[0]);
    close(ends_[1]);
  }

  void makeReadable() const { EXPECT_EQ(write(ends_[1], "x", 1), 1); }
  int reading() const { return ends_[0]; }

 private:
  int ends_[2] = {-1, -1};
};

void stopCallback(void* user, short events, int fd) {
  *static_cast<std::vector<int>*>(user) = {events, fd};
  raise(SIGINT);
}

TEST_F(CContextTest, StartsWithoutArguments) {
  EXPECT_EQ(c_context_init(0, 0), C_RESULT_OK);
}

TEST_F(CContextTest, UnknownOptionIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(init({"--colour"}), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(),
            std::string(program_invocation_short_name) + ": unknown option \"--colour\"\n");
}

TEST_F(CContextTest, MissingConfigurationIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(init({"--config", "/no/such.json"}), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(printed.standardError(), "/no/such.json: cannot be read: No such file or directory\n");
}

TEST_F(CContextTest, MistakeInTheConfigurationIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(initWith(R"({"objects": 1})"), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(), folder_.file("config.json") + ": /objects: must be an array\n");
}

TEST_F(CContextTest, AfterAFailedStartEverythingAnswersNotInitialised) {
  PrintedText printed;
  init({"--colour"});
  int value = 0;
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &value, sizeof value), C_RESULT_NOT_INIT);
  EXPECT_EQ(c_context_load(), C_RESULT_NOT_INIT);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
}

TEST_F(CContextTest, EachContextStartsAfresh) {
  const std::string config =
      R"({"objects": [{"number": 1, "name": "A.", "leaves": {"X": {"type": "int"}}}]})";
  initWith(config);
  int value = 5;
  EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_OK);
  c_context_deinit();
  EXPECT_EQ(initWith(config), C_RESULT_OK);
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(value, 0);
}

TEST_F(CContextTest, WatchedDescriptorIsCalledUntilASignalStopsTheLoop) {
  std::vector<int> got;
  initWith("{}");
  EXPECT_EQ(c_loop_add_fd(reading(), C_LOOP_READ, stopCallback, &got), C_RESULT_OK);
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  makeReadable();
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_EQ(got, (std::vector<int>{C_LOOP_READ, reading()}));
}

TEST_F(CContextTest, WatchThatCannotBeMadeIsRefused) {
  initWith("{}");
  EXPECT_EQ(c_loop_add_fd(reading(), 0, stopCallback, nullptr), C_RESULT_PARAM);
  EXPECT_EQ(c_loop_add_fd(-1, C_LOOP_READ, stopCallback, nullptr), C_RESULT_PARAM);
}

TEST_F(CContextTest, DeletedDescriptorIsNotCalled) {
  std::vector<int> got;
  initWith("{}");
  int other[2];
  ASSERT_EQ(pipe2(other, O_CLOEXEC), 0);
  EXPECT_EQ(write(other[1], "x", 1), 1);
  std::vector<int> ignored;
  c_loop_add_fd(other[0], C_LOOP_READ, stopCallback, &ignored);
  c_loop_add_fd(reading(), C_LOOP_READ, stopCallback, &got);
  c_loop_del_fd(other[0]);
  makeReadable();
  c_loop_run();
  EXPECT_TRUE(ignored.empty());
  EXPECT_EQ(got.size(), 2U);
  close(other[0]);
  close(other[1]);
}

TEST_F(CContextTest, EndWithEverythingRegisteredTouchesNothingOfIt) {
  initWith(R"({"objects": [{"number": 1, "name": "A."}]})");
  c_loop_add_fd(reading(), C_LOOP_READ, stopCallback, nullptr);
  makeReadable();
  c_event_regist_observer("up", nullptr, nullptr);
  c_cfm_regist_observer(1, nullptr, nullptr);
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  c_context_deinit();
  EXPECT_EQ(c_context_init(0, 0), C_RESULT_OK);
}

TEST_F(CContextTest, DiagnosticsAreSwitchedOnAndOff) {
  initWith("{}");
  EXPECT_EQ(c_debug_out("f", 1, "dropped"), C_RESULT_OK);
  EXPECT_EQ(c_context_debug_switch(1), C_RESULT_OK);
  EXPECT_EQ(c_debug_out("f", 2, "%s", "shown"), C_RESULT_OK);
  EXPECT_EQ(c_context_debug_switch(0), C_RESULT_OK);
  c_debug_out("f", 3, "dropped");
  EXPECT_EQ(records(), Records{"debug f:2: shown"});
}

TEST_F(CContextTest, OptionDebugShowsDiagnosticsOfTheLibrary) {
  initWith("{}", {"--debug"});
  int flag = 1;
  EXPECT_EQ(c_cfm_str2bool("maybe", &flag), C_RESULT_PARAM);
  ASSERT_EQ(records().size(), 2U);
  EXPECT_EQ(records()[1].substr(records()[1].rfind(": L")), ": Leave: param error!");
}

TEST_F(CContextTest, HeartbeatNests) {
  initWith("{}");
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_PARAM);
  EXPECT_EQ(c_heartbeat_lock(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_lock(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_OK);
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_PARAM);
}

TEST_F(CContextTest, RecordsAreWrittenUpToTheLevel) {
  initWith("{}", {"--log-level", "warning"});
  c_log_record("netd", C_LOG_WARNING, "no route to %s", "host");
  c_log_record("netd", C_LOG_INFO, "not shown");
  EXPECT_EQ(records(), Records{"warning netd: no route to host"});
}

TEST_F(CContextTest, CommandsGiveTheirStatus) {
  PrintedText printed;
  initWith("{}");
  char exit_4[] = "exit %d";
  char print[] = "echo %s; exit 5";
  EXPECT_EQ(c_system_call("echo %s", "out"), 14);
  EXPECT_EQ(c_system_call2(exit_4, 4), 4);
  EXPECT_EQ(c_popen_call(print, "printed"), 5);
  EXPECT_EQ(printed.standardOutput(), "out\ncmd:echo out\r\n");
  EXPECT_EQ(records(), Records{"info command: printed"});
}

int g_expiries = 0;

int stopAtTheSecond() {
  if (++g_expiries == 2) raise(SIGTERM);
  return 0;
}

TEST_F(CContextTest, TimerExpiresAgainAndAgain) {
  g_expiries = 0;
  initWith("{}");
  EXPECT_EQ(c_context_set_timer(1, 1, stopAtTheSecond), C_RESULT_OK);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_GE(g_expiries, 2);
}

int stopAfterADay() {
  if (++g_expiries == 86400) raise(SIGTERM);
  return 0;
}

TEST_F(CContextTest, VirtualClockRunsThroughADay) {
  g_expiries = 0;
  initWith("{}", {"--clock", "virtual"});
  c_log_record("day", C_LOG_INFO, "begins");
  EXPECT_EQ(c_context_set_timer(1000, 1000, stopAfterADay), C_RESULT_OK);
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  c_log_record("day", C_LOG_INFO, "ends");
  EXPECT_EQ(g_expiries, 86400);
  EXPECT_EQ(records(), (Records{"info day: begins", "info day: ends"}));
}

TEST_F(CContextTest, UnknownClockIsToldInOneLine) {
  PrintedText printed;
  EXPECT_EQ(init({"--clock", "slow"}), C_RESULT_PARAM);
  EXPECT_EQ(printed.standardError(), std::string(program_invocation_short_name) +
                                         ": unknown clock \"slow\"; known clocks: real, virtual\n");
}

TEST_F(CContextTest, TimerMayBeDisarmed) {
  g_expiries = 0;
  initWith("{}");
  c_context_set_timer(0, 1, stopAtTheSecond);
  EXPECT_EQ(c_context_set_timer(-1, 0, stopAtTheSecond), C_RESULT_OK);
  std::vector<int> got;
  c_loop_add_fd(reading(), C_LOOP_READ, stopCallback, &got);
  makeReadable();
  EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  EXPECT_EQ(g_expiries, 0);
}

TEST_F(CContextTest, TimerOfAnEarlierContextIsForgotten) {
  initWith("{}");
  c_context_set_timer(0, 1, stopAtTheSecond);
  c_context_deinit();
  g_expiries = 0;
  initWith("{}");
  std::vector<int> got;
  c_loop_add_fd(reading(), C_LOOP_READ, stopCallback, &got);
  makeReadable();
  c_loop_run();
  EXPECT_EQ(g_expiries, 0);
}

TEST_F(CContextTest, NegativePeriodIsRefused) {
  initWith("{}");
  EXPECT_EQ(c_context_set_timer(1, -1, stopAtTheSecond), C_RESULT_PARAM);
}

TEST_F(CContextTest, LibraryExportsItsEntryPointsAndTakesNull) {
  initWith("{}");
  void* library = dlopen("libcontext_proxy.so", RTLD_LAZY | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  const auto release = reinterpret_cast<void (*)(void*)>(dlsym(library, "relInstance"));
  ASSERT_NE(release, nullptr);
  release(nullptr);
  dlclose(library);
}

}  // namespace
