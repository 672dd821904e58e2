// SPDX-License-Identifier: MIT
#include "host/registration/registry.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/registration/call_history.h"
#include "tests/host/support/recording_log.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;
using Texts = std::vector<std::string>;

Heartbeat::TimePoint g_now;

int pass(int ms, int result = 0) {
  g_now += milliseconds(ms);
  return result;
}

constexpr Callee kNobody;

class RegistryTest : public testing::Test {
 protected:
  Texts keys() const {
    Texts keys;
    for (const auto& callback : registry_.registrations()) {
      keys.push_back(nameOf(callback->kind) + (' ' + callback->key));
    }
    return keys;
  }
  const CallStatistics& first() const { return registry_.registrations().front()->statistics; }

  RecordingLog log_;
  Heartbeat heartbeat_{log_, milliseconds(100), [] { return g_now; }};
  Registry registry_{heartbeat_, [] { return system_clock::time_point(milliseconds(77)); }};
};

TEST_F(RegistryTest, KnowsWhatIsRegisteredInOrder) {
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

TEST_F(RegistryTest, RegistrationLeavesWithItsHandle) {
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

TEST_F(RegistryTest, TextIsNoResult) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kProvider, "A.", kNobody);
  EXPECT_EQ(registration.call([] { return std::string("answer"); }), "answer");
  EXPECT_EQ(first().count, 1U);
  EXPECT_EQ(first().last_result, std::nullopt);
}

TEST_F(RegistryTest, NobodysCallsAreMadeAllTheSame) {
  EXPECT_EQ(RegistrationHandle().call([] { return 3; }), 3);
  EXPECT_EQ(registry_.statistics().count, 0U);
}

TEST_F(RegistryTest, CallInsideACallCountsOnceForTheWhole) {
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

TEST_F(RegistryTest, SlowModuleStepHoldsNoLoop) {
  const RegistrationHandle registration = registry_.add(RegistrationKind::kModule, "m onLoad", kNobody);
  registration.call([] { return pass(1000); });
  EXPECT_EQ(log_.records, Texts{});
}

TEST_F(RegistryTest, EachAdditionAndEachCallIsTold) {
  Texts told;
  registry_.onAdded([&](const Registration& callback) { told.push_back("added " + callback.key); });
  registry_.onCalled([&](const Call& call) { told.push_back("called " + call.registration->key); });
  const RegistrationHandle registration = registry_.add(RegistrationKind::kFd, "1", kNobody);
  registration.call([] { return 0; });
  EXPECT_EQ(told, (Texts{"added 1", "called 1"}));
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
  EXPECT_EQ(history.calls().back().after.time - history.calls().back().before.time, milliseconds(1));
}

}  // namespace

}  // namespace host
