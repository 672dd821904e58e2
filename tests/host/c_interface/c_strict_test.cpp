// SPDX-License-Identifier: MIT
// Misuse of the interface by a C program, which strict mode reports.
#include <dlfcn.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "binding/context.h"
#include "binding/dll_mgr.h"
#include "tests/host/c_interface/c_interface_fixture.h"
#include "tests/support/printed_text.h"

using namespace host;

namespace {

using Records = std::vector<std::string>;

constexpr const char* kConfig = R"({"objects": [
  {"number": 4, "name": "Device.Time.", "leaves": {
    "Server": {"type": "str", "default": "pool"}, "Interval": {"type": "uint"}, "Secret": {"type": "pwd"}}},
  {"number": 5, "name": "Device.Link.", "dynamic": true, "leaves": {"Mtu": {"type": "uint"}}}]})";

int onEvent(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return 0;
}

int onChange(void* /*user*/, int /*id*/, const char* /*instance*/, int /*operation*/, const char* /*leaf*/) {
  return 0;
}

int lockOnce(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  return c_heartbeat_lock();
}

int unlockTwice(void* /*user*/, const char* /*event*/, const char* /*data*/, const char* /*source*/) {
  c_heartbeat_unlock();
  return c_heartbeat_unlock();
}

int stopLoop() {
  return raise(SIGTERM);
}

int armAgain() {
  c_context_set_timer(0, 0, armAgain);
  return raise(SIGTERM);
}

void watchAgain(void* /*user*/, short /*events*/, int fd) {
  c_loop_add_fd(fd, C_LOOP_READ | C_LOOP_ONCE, watchAgain, nullptr);
  raise(SIGTERM);
}

void provide(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/, void* /*handle*/) {}

class CStrictTest : public CInterfaceFixture {
 protected:
  CStrictTest() { initWith(kConfig, {"--strict", "--clock", "virtual"}); }

  // On a virtual clock, the timer stops the loop only after everything that is ready has been handled.
  static void runOnce() {
    c_context_set_timer(0, 0, stopLoop);
    c_loop_run();
  }

  // The only report, without the place of the call, which must be in this file.
  std::string onlyReport() const {
    const Records reports = strictRecords("warning strict: ");
    if (reports.size() != 1) return std::to_string(reports.size()) + " reports\n" + folder_.read("log");
    const auto place = reports[0].find(", called by (anonymous namespace)::CStrictTest");
    if (place == std::string::npos) return reports[0] + " (without a place)";
    const auto file = reports[0].find(" (c_strict_test.cpp:", place);
    if (file == std::string::npos) return reports[0] + " (without a file)";
    return reports[0].substr(0, place) + reports[0].substr(reports[0].find(')', file) + 1);
  }

  Records strictRecords(const std::string& start) const {
    Records found;
    for (const std::string& record : records()) {
      if (record.rfind(start, 0) == 0) found.push_back(record.substr(start.size()));
    }
    return found;
  }

  static int readWord(const char* fullname, const char* type) {
    int value = 0;
    return c_cfm_get_value(fullname, type, &value, sizeof value);
  }
};

TEST_F(CStrictTest, ProperUseIsNotReported) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_event_notify("link-up", "");
  c_event_notify("something-else", "");
  EXPECT_EQ(readWord("Device.Time.Interval", "uint"), C_RESULT_OK);
  EXPECT_EQ(readWord("Device.Link.7.Mtu", "uint"), C_RESULT_OK);
  EXPECT_EQ(readWord("Entirely.Different", "uint"), C_RESULT_NOT_INIT);
  c_heartbeat_lock();
  c_heartbeat_unlock();
  char format[] = "%s";
  c_log_record("m", C_LOG_INFO, format, std::string(77, 'x').c_str());
  c_debug_out("m.c", 1, "%s", std::string(1021, 'x').c_str());
  c_event_unregist_observer("link-up", onEvent);
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, SimilarLeafIsSuggested) {
  readWord("Device.Time.interval", "uint");
  EXPECT_EQ(onlyReport(),
            "there is no leaf \"Device.Time.interval\"; did you mean \"Device.Time.Interval\"?");
}

TEST_F(CStrictTest, LeafOfASimilarInstanceIsSuggested) {
  readWord("Device.Tyme.Interval", "uint");
  EXPECT_EQ(onlyReport(),
            "there is no leaf \"Device.Tyme.Interval\"; did you mean \"Device.Time.Interval\"?");
}

TEST_F(CStrictTest, LeafWithErrorsInTheInstanceAndInItsNameIsSuggested) {
  readWord("Device.Tyme.Intervall", "uint");
  EXPECT_EQ(onlyReport(),
            "there is no leaf \"Device.Tyme.Intervall\"; did you mean \"Device.Time.Interval\"?");
}

TEST_F(CStrictTest, LeafWithTooManyErrorsInAllIsNotSuggested) {
  readWord("Device.Tyme.Intervalls", "uint");
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, SimilarEventIsSuggested) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_event_notify("linkup", "");
  EXPECT_EQ(onlyReport(), "no observer is registered for the event \"linkup\"; did you mean \"link-up\"?");
}

TEST_F(CStrictTest, TypeThatDiffersInCaseIsReported) {
  EXPECT_EQ(readWord("Device.Time.Interval", "Uint"), C_RESULT_PARAM);
  EXPECT_EQ(
      onlyReport(),
      "the leaf \"Device.Time.Interval\" of type \"uint\" is read or written under another type; types are "
      "compared byte by byte");
}

TEST_F(CStrictTest, UintAboveIntIsReported) {
  const unsigned int value = 2147483648U;
  EXPECT_EQ(c_cfm_set_value("Device.Time.Interval", 0, "uint", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(
      onlyReport(),
      "the \"uint\" leaf \"Device.Time.Interval\" is set to a value above 2147483647, which is stored as a "
      "negative number");
}

TEST_F(CStrictTest, LargestIntIsNotReported) {
  const unsigned int value = 2147483647U;
  EXPECT_EQ(c_cfm_set_value("Device.Time.Interval", 0, "uint", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, LogRecordThatFillsItsBufferIsReported) {
  char format[] = "%s";
  c_log_record("m", C_LOG_INFO, format, std::string(200, 'x').c_str());
  EXPECT_EQ(onlyReport(), "the text of a log record fills its buffer of 78 bytes and was probably truncated");
}

TEST_F(CStrictTest, DiagnosticThatFillsItsBufferIsReported) {
  c_debug_out("m.c", 1, "%s", std::string(2000, 'x').c_str());
  EXPECT_EQ(onlyReport(), "a diagnostic fills its buffer of 1022 bytes and was probably truncated");
}

TEST_F(CStrictTest, CommandThatFillsItsBufferIsReported) {
  const std::string command = "true " + std::string(2000, 'x');
  char format[] = "%s";
  EXPECT_EQ(c_system_call2(format, command.c_str()), 0);
  EXPECT_EQ(onlyReport(), "a command fills its buffer of 1022 bytes and was probably truncated");
}

TEST_F(CStrictTest, PrintedCommandThatFillsItsBufferIsReported) {
  PrintedText printed;
  c_system_call("true %s", std::string(2000, 'x').c_str());
  EXPECT_EQ(onlyReport(), "a command fills its buffer of 1022 bytes and was probably truncated");
}

TEST_F(CStrictTest, RecordFromCxxIsNotReported) {
  getContext()->getLog()->record("m", C_LOG_INFO, std::string(79, 'x').c_str());
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, TimerThatRearmsItselfIsNotReported) {
  c_context_set_timer(0, 0, armAgain);
  c_loop_run();
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, OneShotWatchThatRenewsItselfIsNotReported) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[1]);
  c_loop_add_fd(ends[0], C_LOOP_READ | C_LOOP_ONCE, watchAgain, nullptr);
  c_loop_run();
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
  c_loop_del_fd(ends[0]);
  close(ends[0]);
}

TEST_F(CStrictTest, ProviderThatReplacesItselfIsNotReported) {
  c_cfm_data_provider_regist(4, provide, nullptr);
  c_cfm_data_provider_regist(4, provide, nullptr);
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, SecondRegistrationOfAFunctionForAnEventIsReported) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_event_regist_observer("link-down", onEvent, nullptr);
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
  c_event_regist_observer("link-up", onEvent, nullptr);
  const std::string report = onlyReport();
  EXPECT_EQ(report.rfind("(anonymous namespace)::onEvent(void*, ", 0), 0U) << report;
  EXPECT_NE(report.find(" of event link-up is registered twice"), std::string::npos) << report;
}

TEST_F(CStrictTest, SecondRegistrationOfAFunctionForAnObjectIsReported) {
  c_cfm_regist_observer(4, onChange, nullptr);
  c_cfm_regist_observer(4, onChange, nullptr);
  const std::string report = onlyReport();
  EXPECT_NE(report.find(" of change Device.Time. is registered twice"), std::string::npos) << report;
}

TEST_F(CStrictTest, UnlockWithoutALockIsReported) {
  EXPECT_EQ(c_heartbeat_unlock(), C_RESULT_PARAM);
  EXPECT_EQ(onlyReport(), "the heartbeat is unlocked, but not locked");
}

TEST_F(CStrictTest, CallbackThatKeepsALockIsReported) {
  c_event_regist_observer("link-up", lockOnce, nullptr);
  c_event_notify("link-up", "");
  const Records reports = strictRecords("warning strict: ");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].rfind("(anonymous namespace)::lockOnce(", 0), 0U) << reports[0];
  EXPECT_NE(reports[0].find(" of event link-up returns with 1 more heartbeat locks than it was called with"),
            std::string::npos)
      << reports[0];
}

TEST_F(CStrictTest, CallbackThatReleasesALockIsReported) {
  c_event_regist_observer("link-up", unlockTwice, nullptr);
  c_heartbeat_lock();
  c_heartbeat_lock();
  c_heartbeat_lock();
  c_event_notify("link-up", "");
  const Records reports = strictRecords("warning strict: ");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_NE(reports[0].find(" of event link-up returns with 2 fewer heartbeat locks than it was called with"),
            std::string::npos)
      << reports[0];
}

TEST_F(CStrictTest, CallbackDuringALockIsNotReported) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_heartbeat_lock();
  c_event_notify("link-up", "");
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
}

TEST_F(CStrictTest, CallOnAnotherThreadIsReportedByTheLoop) {
  bool done = false;
  std::thread([&done] {
    c_event_notify("link-up", "");
    done = true;  // otherwise the call above could be a tail call, which leaves no place in this function
  }).join();
  EXPECT_TRUE(done);
  EXPECT_EQ(strictRecords("warning strict: "), Records{});
  runOnce();
  const Records reports = strictRecords("warning strict: ");
  ASSERT_EQ(reports.size(), 2U);
  EXPECT_EQ(reports[0].rfind("getEvent is called on another thread than the loop's, called by ", 0), 0U);
  EXPECT_EQ(reports[1].rfind("notify is called on another thread than the loop's, called by ", 0), 0U);
  EXPECT_NE(reports[1].find("c_strict_test.cpp:"), std::string::npos) << reports[1];
}

TEST_F(CStrictTest, RemainingRegistrationsAreListedAtTheEnd) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_cfm_regist_observer(4, onChange, nullptr);
  c_loop_add_fd(ends[0], C_LOOP_READ, watchAgain, nullptr);
  runOnce();
  const Records remaining = strictRecords("notice strict: still registered at the end: ");
  Records listed;
  for (const std::string& record : remaining) listed.push_back(record.substr(record.rfind(" of ") + 1));
  EXPECT_EQ(listed,
            (Records{"of event link-up", "of change Device.Time.", "of fd " + std::to_string(ends[0])}));
  c_loop_del_fd(ends[0]);
  close(ends[0]);
  close(ends[1]);
}

TEST_F(CStrictTest, RemainingRegistrationIsListedWithItsFunction) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  runOnce();
  const Records remaining = strictRecords("notice strict: still registered at the end: ");
  ASSERT_EQ(remaining.size(), 1U);
  EXPECT_EQ(remaining[0].rfind("(anonymous namespace)::onEvent(void*, ", 0), 0U) << remaining[0];
}

TEST_F(CStrictTest, UnregisteredObserverIsNotListedAtTheEnd) {
  c_event_regist_observer("link-up", onEvent, nullptr);
  c_event_unregist_observer("link-up", onEvent);
  runOnce();
  EXPECT_EQ(strictRecords("notice strict: "), Records{});
}

// The interface has no function to unregister a provider.
TEST_F(CStrictTest, ProviderIsNotListedAtTheEnd) {
  c_cfm_data_provider_regist(4, provide, nullptr);
  runOnce();
  EXPECT_EQ(strictRecords("notice strict: "), Records{});
}

TEST_F(CStrictTest, PasswordIsInNoReport) {
  const std::string password(300, 'q');
  c_cfm_set_value("Device.Time.Secret", 0, "pwd", password.c_str(), static_cast<unsigned>(password.size()));
  c_cfm_set_value("Device.Time.secret", 0, "pwd", password.c_str(), static_cast<unsigned>(password.size()));
  c_cfm_set_value("Device.Time.Secret", 0, "Pwd", password.c_str(), static_cast<unsigned>(password.size()));
  EXPECT_EQ(strictRecords("warning strict: ").size(), 2U);
  EXPECT_EQ(folder_.read("log").find('q'), std::string::npos);
}

class CStrictModuleTest : public CInterfaceFixture {};

TEST_F(CStrictModuleTest, RegistrationThatOutlivesItsModuleIsReported) {
  ASSERT_EQ(initWith("{}", {"--strict", "--module", MODULE_FOLDER "/libforgetful_module.so"}), C_RESULT_OK);
  ASSERT_EQ(c_context_load(), C_RESULT_OK);
  c_context_set_timer(0, 0, stopLoop);
  c_loop_run();
  const std::string log = folder_.read("log");
  EXPECT_NE(log.find("warning strict: forgotten_observer"), std::string::npos) << log;
  EXPECT_NE(log.find(" of event link-up is still registered after its module was unloaded"),
            std::string::npos)
      << log;
  EXPECT_EQ(log.find("warning strict: remembered_observer"), std::string::npos) << log;
}

TEST_F(CStrictModuleTest, RegistrationOfAModuleWithoutAnUnloadStepIsReported) {
  ASSERT_EQ(initWith("{}", {"--strict", "--module", MODULE_FOLDER "/libcareless_module.so"}), C_RESULT_OK);
  ASSERT_EQ(c_context_load(), C_RESULT_OK);
  c_context_set_timer(0, 0, stopLoop);
  c_loop_run();
  const std::string log = folder_.read("log");
  EXPECT_NE(log.find(" of event link-up is still registered after its module was unloaded"),
            std::string::npos)
      << log;
}

TEST_F(CStrictModuleTest, RegistrationFromALibraryThatIsNotAModuleIsNotReported) {
  ASSERT_EQ(initWith("{}", {"--strict"}), C_RESULT_OK);
  void* library = dlopen(MODULE_FOLDER "/libforgetful_module.so", RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  c_event_regist_observer("link-up", reinterpret_cast<c_event_callback>(dlsym(library, "getInstance")),
                          nullptr);
  ASSERT_EQ(c_context_load(), C_RESULT_OK);
  c_context_set_timer(0, 0, stopLoop);
  c_loop_run();
  EXPECT_EQ(folder_.read("log").find("warning strict: "), std::string::npos) << folder_.read("log");
  dlclose(library);
}

using CStrictDeathTest = CInterfaceFixture;

TEST_F(CStrictDeathTest, MisuseIsFatalOnRequest) {
  initWith(kConfig, {"--strict=fatal"});
  EXPECT_DEATH(c_heartbeat_unlock(), "^strict: the heartbeat is unlocked, but not locked, called by .*\n$");
}

}  // namespace
