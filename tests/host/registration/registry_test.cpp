// SPDX-License-Identifier: MIT
#include "host/registration/registry.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/registration/call_history.h"
#include "tests/host/support/services.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;
using Texts = std::vector<std::string>;

int pass(int ms, int result = 0) {
  CallTime::pass(milliseconds(ms));
  return result;
}

constexpr Callee kNobody;

class RegistryTest : public testing::Test {
 protected:
  Texts keys() const {
    Texts keys;
    for (const auto& registration : registry_.registrations()) {
      keys.push_back(nameOf(registration->kind) + (' ' + registration->key));
    }
    return keys;
  }
  const CallStatistics& first() const { return registry_.registrations().front()->statistics; }

  Services services_{milliseconds(100), [] { return system_clock::time_point(milliseconds(77)); }};
  MemoryLog& log_ = services_.log;
  Registry& registry_ = services_.registry;
};

TEST_F(RegistryTest, RegistrationsAreListedInOrder) {
  const RegistrationHandle a = registry_.add(RegistrationKind::kEvent, "link-up", kNobody);
  const RegistrationHandle b = registry_.add(RegistrationKind::kFd, "7", kNobody);
  EXPECT_EQ(keys(), (Texts{"event link-up", "fd 7"}));
  EXPECT_EQ(registry_.registrations()[0]->since, system_clock::time_point(milliseconds(77)));
}

TEST_F(RegistryTest, EveryKindHasAName) {
  Texts names;
  for (const RegistrationKind kind :
       {RegistrationKind::kFd, RegistrationKind::kTimer, RegistrationKind::kEvent, RegistrationKind::kChange,
        RegistrationKind::kProvider, RegistrationKind::kModule}) {
    names.emplace_back(nameOf(kind));
  }
  EXPECT_EQ(names, (Texts{"fd", "timer", "event", "change", "provider", "module"}));
}

TEST_F(RegistryTest, RegistrationEndsWithItsHandle) {
  { const RegistrationHandle gone = registry_.add(RegistrationKind::kFd, "1", kNobody); }
  EXPECT_EQ(keys(), Texts{});
}

TEST_F(RegistryTest, HandleMayMove) {
  RegistrationHandle a = registry_.add(RegistrationKind::kFd, "1", kNobody);
  RegistrationHandle b = std::move(a);
  EXPECT_EQ(keys(), Texts{"fd 1"});
  b = registry_.add(RegistrationKind::kFd, "2", kNobody);
  EXPECT_EQ(keys(), Texts{"fd 2"});
  b = RegistrationHandle();
  EXPECT_EQ(keys(), Texts{});
}

TEST_F(RegistryTest, CallIsCountedAndMeasured) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kFd, "1", kNobody);
  EXPECT_EQ(registration.call([] { return pass(30, -1019); }), -1019);
  EXPECT_EQ(registration.call([] { return pass(10, 5); }), 5);
  EXPECT_EQ(first().count, 2U);
  EXPECT_EQ(first().total, milliseconds(40));
  EXPECT_EQ(first().longest, milliseconds(30));
  EXPECT_EQ(first().last, milliseconds(10));
  EXPECT_EQ(first().last_result, 5);
}

TEST_F(RegistryTest, TextIsNotAResult) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kProvider, "A.", kNobody);
  EXPECT_EQ(registration.call([] { return std::string("answer"); }), "answer");
  EXPECT_EQ(first().count, 1U);
  EXPECT_EQ(first().last_result, std::nullopt);
}

TEST_F(RegistryTest, CallsWithoutARegistrationAreMade) {
  EXPECT_EQ(RegistrationHandle().call([] { return 3; }), 3);
  EXPECT_EQ(registry_.statistics().count, 0U);
}

TEST_F(RegistryTest, NestedCallCountsOnceInTheTotal) {
  const RegistrationHandle outer = registry_.add(RegistrationKind::kFd, "1", kNobody);
  const RegistrationHandle inner = registry_.add(RegistrationKind::kEvent, "e", kNobody);
  outer.call([&] {
    pass(10);
    return inner.call([] { return pass(20); }).value();
  });
  EXPECT_EQ(registry_.statistics().count, 1U);
  EXPECT_EQ(registry_.statistics().total, milliseconds(30));
  EXPECT_EQ(registry_.registrations()[1]->statistics.total, milliseconds(20));
}

TEST_F(RegistryTest, CallMayEndItsOwnRegistration) {
  RegistrationHandle registration = registry_.add(RegistrationKind::kFd, "1", kNobody);
  registration.call([&] {
    registration = RegistrationHandle();
    return pass(5);
  });
  EXPECT_EQ(keys(), Texts{});
  EXPECT_EQ(registry_.statistics().total, milliseconds(5));
}

TEST_F(RegistryTest, SlowCallIsReportedWithKindAndKey) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kChange, "Device.Time.", kNobody);
  registration.call([] { return pass(101); });
  EXPECT_EQ(log_.records,
            Texts{"4 heartbeat: the callback nobody of change Device.Time. held the loop for 101 ms"});
}

TEST_F(RegistryTest, SlowModuleStepIsNotReported) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kModule, "m onLoad", kNobody);
  registration.call([] { return pass(1000); });
  EXPECT_EQ(log_.records, Texts{});
}

TEST_F(RegistryTest, ListenersSeeEachAdditionAndEachCall) {
  Texts seen;
  registry_.onAdded([&](const Registration& added) { seen.push_back("added " + added.key); });
  registry_.onCalled([&](const Call& call) { seen.push_back("called " + call.registration->key); });
  const RegistrationHandle registration = registry_.add(RegistrationKind::kFd, "1", kNobody);
  registration.call([] { return 0; });
  EXPECT_EQ(seen, (Texts{"added 1", "called 1"}));
}

TEST_F(RegistryTest, HistoryKeepsTheLatestCalls) {
  CallHistory history(registry_, 2);
  for (const char* key : {"1", "2", "3"}) {
    registry_.add(RegistrationKind::kFd, key, kNobody).call([] { return pass(1, 9); });
  }
  ASSERT_EQ(history.calls().size(), 2U);
  EXPECT_EQ(history.calls().front().registration->key, "2");
  EXPECT_EQ(history.calls().back().registration->key, "3");
  EXPECT_EQ(history.calls().back().result, 9);
  EXPECT_EQ(history.calls().back().duration, milliseconds(1));
  EXPECT_EQ(history.calls().back().begin - history.calls().front().begin, milliseconds(1));
}

TEST_F(RegistryTest, HistoryStaysInOrderHoweverOftenItIsFilled) {
  CallHistory history(registry_, 3);
  for (int i = 1; i <= 10; i++) {
    registry_.add(RegistrationKind::kFd, std::to_string(i), kNobody).call([] { return 0; });
    Texts keys;
    for (const PastCall& call : history.calls()) keys.push_back(call.registration->key);
    Texts expected;
    for (int j = std::max(1, i - 2); j <= i; j++) expected.push_back(std::to_string(j));
    EXPECT_EQ(keys, expected);
  }
}

TEST_F(RegistryTest, TimeBetweenTwoCallsInARowCountsToTheSecond) {
  const RegistrationHandle first = registry_.add(RegistrationKind::kEvent, "1", kNobody);
  const RegistrationHandle second = registry_.add(RegistrationKind::kEvent, "2", kNobody);
  std::optional<Heartbeat::Reading> now;
  first.call([] { return pass(10); }, now);
  pass(5);
  second.call([] { return pass(20); }, now);
  EXPECT_EQ(registry_.registrations()[0]->statistics.total, milliseconds(10));
  EXPECT_EQ(registry_.registrations()[1]->statistics.total, milliseconds(25));
}

}  // namespace

}  // namespace host
