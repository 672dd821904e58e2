// SPDX-License-Identifier: MIT
// Module libraries and the master observer of a C program on the host context.
#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"
#include "tests/support/printed_text.h"

using namespace host;

namespace {

using Records = std::vector<std::string>;

std::string library(const std::string& name) {
  return MODULE_FOLDER "/lib" + name + ".so";
}

// A master observer whose steps are in the log beside those of the modules.
int g_run_answer = 0;

int record(const char* step) {
  c_log_record("master", C_LOG_INFO, "%s", step);
  return 0;
}

ModuleCallbacks g_master = {
    [] { return record("onLoad"); },
    [] { return record("onStart"); },
    [](const char* name, int) { return record((std::string("onConfig ") + name).c_str()); },
    [] {
      record("onRun");
      return g_run_answer;
    },
    [](const char* name, int) { return record((std::string("onUnconfig ") + name).c_str()); },
    [] { return record("onUnload"); },
    [](const char* name) { return record((std::string("recvDependence ") + name).c_str()); },
};

int stop() {
  return raise(SIGTERM);
}

class CModulesTest : public CInterfaceFixture {
 protected:
  void initWithModules(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "\"" : ", \"") + library(name) + '"';
    EXPECT_EQ(initWith(R"({"modules": [)" + list + "]}"), C_RESULT_OK);
  }

  void registMaster(int run_answer = 0) {
    g_run_answer = run_answer;
    EXPECT_EQ(c_context_regist_master_observer(&g_master), C_RESULT_OK);
  }

  static void runOnce() {
    c_context_set_timer(0, 0, stop);
    EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  }

  // The records that have come since the last call.
  Records news() {
    const Records all = records();
    Records result(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end());
    seen_ = all.size();
    return result;
  }

 private:
  std::size_t seen_ = 0;
};

TEST_F(CModulesTest, EachStepIsTakenByEveryModuleThenByTheMasterObserver) {
  initWithModules({"second_module", "first_module"});
  registMaster();
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  EXPECT_EQ(news(), (Records{"info second: onLoad", "info first: onLoad", "info master: onLoad",
                             "info second: onStart", "info first: onStart", "info master: onStart",
                             "info second: onConfig cfmd 0", "info first: onConfig cfmd 0",
                             "info master: onConfig master", "info second: onRun", "info first: onRun",
                             "info master: onRun"}));
}

TEST_F(CModulesTest, StepsAreTakenBackBeforeTheLoopReturns) {
  initWithModules({"first_module"});
  registMaster();
  c_context_load();
  news();
  runOnce();
  EXPECT_EQ(news(), (Records{"info master: onUnconfig master", "info first: onUnconfig master 0",
                             "info master: onUnload", "info first: onUnload"}));
}

TEST_F(CModulesTest, DependenceReachesEverybody) {
  initWithModules({"first_module"});
  registMaster();
  c_context_notify_depends("early");
  c_context_load();
  news();
  c_context_notify_depends("dns");
  EXPECT_EQ(news(), (Records{"info first: recvDependence dns", "info master: recvDependence dns"}));
}

TEST_F(CModulesTest, ModulesOfTheCommandLineComeAfterThoseOfTheConfiguration) {
  initWith(R"({"modules": [")" + library("second_module") + "\"]}", {"--module", library("first_module")});
  c_context_load();
  EXPECT_EQ(news()[0], "info second: onLoad");
}

TEST_F(CModulesTest, ModuleThatFailsIsNamedAndWhatWasDoneIsTakenBack) {
  initWithModules({"first_module", "failing_module"});
  registMaster();
  EXPECT_EQ(c_context_load(), C_RESULT_PARAM);
  EXPECT_EQ(news(), (Records{"info first: onLoad", "info failing: onLoad", "info master: onLoad",
                             "info first: onStart", "info failing: onStart",
                             "error lifecycle: onStart of " + library("failing_module") + " failed: -1023",
                             "info master: onUnload", "info first: onUnload", "info failing: onUnload"}));
}

TEST_F(CModulesTest, MasterObserverThatFailsIsNamedAndWhatWasDoneIsTakenBack) {
  initWithModules({"first_module"});
  registMaster(-9);
  EXPECT_EQ(c_context_load(), -9);
  const Records all = news();
  EXPECT_EQ(
      Records(all.end() - 5, all.end()),
      (Records{"error lifecycle: onRun of the master observer failed: -9", "info master: onUnconfig master",
               "info first: onUnconfig master 0", "info master: onUnload", "info first: onUnload"}));
}

TEST_F(CModulesTest, LibraryThatIsNotThereIsNamed) {
  initWithModules({"first_module", "no_such_module"});
  EXPECT_EQ(c_context_load(), C_RESULT_NOT_FOUND);
  EXPECT_EQ(news(), Records{"error lifecycle: " + library("no_such_module") +
                            ": cannot open shared object file: No such file or directory"});
}

TEST_F(CModulesTest, LibraryWithoutEntryPointIsNamed) {
  initWithModules({"no_entry"});
  EXPECT_EQ(c_context_load(), C_RESULT_NOT_FOUND);
  EXPECT_EQ(news(), Records{"error lifecycle: " + library("no_entry") + ": undefined symbol: getInstance"});
}

TEST_F(CModulesTest, LibraryThatYieldsNothingIsNamed) {
  initWithModules({"null_module"});
  EXPECT_EQ(c_context_load(), C_RESULT_NOT_FOUND);
  EXPECT_EQ(news(), Records{"error lifecycle: " + library("null_module") +
                            ": getInstance() returned no module, or the module of another library"});
}

TEST_F(CModulesTest, FailureToOpenMayBeTriedAgain) {
  initWithModules({"first_module", "no_such_module"});
  c_context_load();
  EXPECT_EQ(c_context_load(), C_RESULT_NOT_FOUND);
}

TEST_F(CModulesTest, StoppedModulesMayBeLoadedAgain) {
  initWithModules({"first_module"});
  c_context_load();
  runOnce();
  news();
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  EXPECT_EQ(news().size(), 4U);
}

TEST_F(CModulesTest, EndWithoutRunningTakesNoStepBack) {
  initWithModules({"first_module"});
  registMaster();
  c_context_load();
  news();
  c_context_deinit();
  EXPECT_EQ(news(), Records{});
}

TEST_F(CModulesTest, ModuleThatIsReleasedAtTheEndFindsNoServicesAnyMore) {
  initWithModules({"careless_module"});
  c_context_load();
  PrintedText printed;
  c_context_deinit();
  EXPECT_EQ(printed.standardOutput(), "released: -1022\n");
}

TEST_F(CModulesTest, SecondMasterObserverIsIgnored) {
  initWith("{}");
  registMaster();
  EXPECT_NE(c_context_regist_master_observer(&g_master), C_RESULT_OK);
  EXPECT_EQ(c_context_load(), C_RESULT_OK);
  EXPECT_EQ(news().size(), 4U);
}

}  // namespace
