// SPDX-License-Identifier: MIT
#include "host/lifecycle/lifecycle.h"

#include <errno.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "boot/boot_context.h"
#include "include_c"
#include "tests/host/support/quiet_registry.h"
#include "tests/host/support/recording_log.h"

namespace host {
namespace {

using Calls = std::vector<std::string>;

// Keeps each call and answers it as told, otherwise 0.
class Participant final : public IBootContext {
 public:
  Participant(std::string name, Calls& calls) : name_(std::move(name)), calls_(calls) {}

  int onLoad() override { return take("onLoad"); }
  int onStart() override { return take("onStart"); }
  int onConfig(std::string name, int arg) override {
    return take("onConfig " + name + ' ' + std::to_string(arg));
  }
  int onRun() override { return take("onRun"); }
  int onUnconfig(std::string name, int arg) override {
    return take("onUnconfig " + name + ' ' + std::to_string(arg));
  }
  int onStop() override { return take("onStop"); }
  int onUnload() override { return take("onUnload"); }
  int recvDependence(std::string name) override { return take("recvDependence " + name); }

  std::map<std::string, int> answers;
  std::map<std::string, std::function<void()>> then;

 private:
  int take(const std::string& call) {
    calls_.push_back(name_ + call);
    if (then.count(call) != 0) then[call]();
    return answers.count(call) != 0 ? answers[call] : 0;
  }

  const std::string name_;
  Calls& calls_;
};

class LifecycleTest : public testing::Test {
 protected:
  RecordingLog log_;
  QuietRegistry registry_;
  Lifecycle lifecycle_{nullptr, {}, log_, registry_};
  Calls calls_;
  Participant master_{"", calls_};
};

TEST_F(LifecycleTest, WithoutParticipantsLoadingSucceeds) {
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
  lifecycle_.unload();
}

TEST_F(LifecycleTest, MasterObserverTakesItsStepsInOrder) {
  EXPECT_EQ(lifecycle_.registMasterObserver(&master_), C_RESULT_OK);
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
  EXPECT_EQ(calls_, (Calls{"onLoad", "onStart", "onConfig master 0", "onRun"}));
}

TEST_F(LifecycleTest, StepsAreTakenBackInReverseOrder) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  calls_.clear();
  lifecycle_.unload();
  EXPECT_EQ(calls_, (Calls{"onUnconfig master 0", "onStop", "onUnload"}));
}

TEST_F(LifecycleTest, StepsAreTakenBackOnce) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  lifecycle_.unload();
  calls_.clear();
  lifecycle_.unload();
  EXPECT_EQ(calls_, Calls{});
}

TEST_F(LifecycleTest, WithoutLoadingNothingIsTakenBack) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.unload();
  EXPECT_EQ(calls_, Calls{});
}

TEST_F(LifecycleTest, SecondLoadIsRefused) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  calls_.clear();
  EXPECT_EQ(lifecycle_.load(), C_RESULT_REDUNDANT);
  EXPECT_EQ(calls_, Calls{});
}

TEST_F(LifecycleTest, UnloadedMayBeLoadedAgain) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  lifecycle_.unload();
  calls_.clear();
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
  EXPECT_EQ(calls_.size(), 4U);
}

TEST_F(LifecycleTest, SecondMasterObserverIsRefused) {
  Participant other("other ", calls_);
  lifecycle_.registMasterObserver(&master_);
  EXPECT_EQ(lifecycle_.registMasterObserver(&other), C_RESULT_REDUNDANT);
}

TEST_F(LifecycleTest, MasterObserverThatComesTooLateIsRefused) {
  lifecycle_.load();
  EXPECT_EQ(lifecycle_.registMasterObserver(&master_), C_RESULT_PARAM);
}

TEST_F(LifecycleTest, NullMasterObserverIsRefused) {
  EXPECT_EQ(lifecycle_.registMasterObserver(nullptr), C_RESULT_PARAM);
  EXPECT_EQ(lifecycle_.registMasterObserver(&master_), C_RESULT_OK);
}

TEST_F(LifecycleTest, FailureEndsLoadingAndIsReported) {
  master_.answers["onConfig master 0"] = -5;
  lifecycle_.registMasterObserver(&master_);
  EXPECT_EQ(lifecycle_.load(), -5);
  EXPECT_EQ(log_.records, Calls{"3 lifecycle: onConfig of the master observer failed: -5"});
}

TEST_F(LifecycleTest, FailureTakesBackWhatWasDone) {
  master_.answers["onConfig master 0"] = -5;
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  EXPECT_EQ(calls_, (Calls{"onLoad", "onStart", "onConfig master 0", "onStop", "onUnload"}));
}

TEST_F(LifecycleTest, AfterAFailureLoadingMayBeTriedAgain) {
  master_.answers["onLoad"] = -5;
  lifecycle_.registMasterObserver(&master_);
  EXPECT_EQ(lifecycle_.load(), -5);
  master_.answers.clear();
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
}

TEST_F(LifecycleTest, AnswerNotForMeIsNoFailure) {
  master_.answers["onConfig master 0"] = IBootContext::kNotForMe;
  lifecycle_.registMasterObserver(&master_);
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
}

TEST_F(LifecycleTest, FailureToTakeBackIsReportedAndNotTheEnd) {
  master_.answers["onStop"] = -7;
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  calls_.clear();
  lifecycle_.unload();
  EXPECT_EQ(calls_, (Calls{"onUnconfig master 0", "onStop", "onUnload"}));
  EXPECT_EQ(log_.records, Calls{"3 lifecycle: onStop of the master observer failed: -7"});
}

TEST_F(LifecycleTest, DependenceIsToldOnceLoaded) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.notifyDepends("early");
  lifecycle_.load();
  calls_.clear();
  lifecycle_.notifyDepends("dns");
  EXPECT_EQ(calls_, Calls{"recvDependence dns"});
}

TEST_F(LifecycleTest, DependenceIsNotToldOnceUnloaded) {
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  lifecycle_.unload();
  calls_.clear();
  lifecycle_.notifyDepends("late");
  EXPECT_EQ(calls_, Calls{});
}

TEST_F(LifecycleTest, DependenceIsToldWhileStepsAreTaken) {
  master_.then["onStart"] = [this] { lifecycle_.notifyDepends("dns"); };
  lifecycle_.registMasterObserver(&master_);
  lifecycle_.load();
  EXPECT_EQ(calls_[2], "recvDependence dns");
}

TEST_F(LifecycleTest, ProductIsNamedAfterTheProgram) {
  HostProduct product(nullptr, {}, log_, registry_);
  EXPECT_EQ(product.productName(), program_invocation_short_name);
  EXPECT_EQ(product.productVersion(), "");
}

TEST_F(LifecycleTest, LoadInsideAStepIsRefused) {
  int result = 0;
  master_.then["onStart"] = [&] { result = lifecycle_.load(); };
  lifecycle_.registMasterObserver(&master_);
  EXPECT_EQ(lifecycle_.load(), C_RESULT_OK);
  EXPECT_EQ(result, C_RESULT_REDUNDANT);
}

}  // namespace

}  // namespace host
