// SPDX-License-Identifier: MIT
// Calls that throw, and calls that are refused.
#include <pthread.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/registration/registry.h"
#include "tests/host/support/services.h"

namespace host {
namespace {

using Texts = std::vector<std::string>;

class FailedCallsTest : public testing::Test {
 protected:
  FailedCallsTest() {
    registry_.onFailed([this](const FailedCall& call) { failed_.push_back(call.text); });
  }

  Services services_;
  Registry& registry_ = services_.registry;
  RegistrationHandle registration_ = registry_.add(RegistrationKind::kEvent, "up", {});
  Texts failed_;
};

int throwError() {
  throw std::runtime_error("no answer");
}

TEST_F(FailedCallsTest, CallThatThrowsHasNoResult) {
  EXPECT_EQ(registration_.call(throwError), std::nullopt);
  EXPECT_EQ(failed_, Texts{"the callback nobody of event up threw std::runtime_error: no answer"});
}

TEST_F(FailedCallsTest, AnyTypeMayBeThrown) {
  EXPECT_EQ(registration_.call([]() -> std::string { throw 5; }), std::nullopt);
  EXPECT_EQ(failed_, Texts{"the callback nobody of event up threw int"});
}

TEST_F(FailedCallsTest, CallThatThrowsIsMeasuredWithoutAResult) {
  registration_.call(throwError);
  const CallStatistics& statistics = registry_.registrations().front()->statistics;
  EXPECT_EQ(statistics.count, 1U);
  EXPECT_EQ(statistics.last_result, std::nullopt);
  EXPECT_EQ(registry_.statistics().count, 1U);
  EXPECT_EQ(registry_.running(), nullptr);
}

TEST_F(FailedCallsTest, OuterCallGoesOnAfterAnExceptionInAnInnerOne) {
  const RegistrationHandle outer = registry_.add(RegistrationKind::kFd, "7", {});
  EXPECT_EQ(outer.call([this] { return registration_.call(throwError).value_or(3); }), 3);
}

TEST_F(FailedCallsTest, ThreadMayEndInACall) {
  const auto end = [](void* registration) -> void* {
    static_cast<RegistrationHandle*>(registration)->call([]() -> int { pthread_exit(nullptr); });
    return registration;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, nullptr, end, &registration_), 0);
  void* result = this;
  EXPECT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(failed_, Texts{});
  EXPECT_EQ(registry_.running(), nullptr);
}

TEST_F(FailedCallsTest, CallsAreRefusedFromTheLimitUntilTheOutermostReturns) {
  int made = 0;
  int refused = 0;
  const std::function<int()> callTwice = [&] {
    made++;
    for (int i = 0; i < 2; i++) {
      if (!registration_.call(callTwice)) refused++;
    }
    return 0;
  };
  for (int i = 0; i < 2; i++) EXPECT_EQ(registration_.call(callTwice), 0);
  EXPECT_EQ(made, 2 * static_cast<int>(Registry::kMostNested));
  EXPECT_EQ(refused, made + 2);
  EXPECT_EQ(failed_.size(), 2U);
}

TEST_F(FailedCallsTest, RunningCallIsTheInnermost) {
  const RegistrationHandle outer = registry_.add(RegistrationKind::kFd, "7", {});
  Texts running;
  const auto note = [&] {
    running.push_back(registry_.running()->key);
    return 0;
  };
  outer.call([&] {
    registration_.call(note);
    return note();
  });
  EXPECT_EQ(running, (Texts{"up", "7"}));
}

}  // namespace

}  // namespace host
