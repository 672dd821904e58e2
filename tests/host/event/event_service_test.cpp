// SPDX-License-Identifier: MIT
#include "host/event/event_service.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "include_c"
#include "tests/host/support/quiet_registry.h"

namespace host {
namespace {

using Told = std::vector<std::string>;

class Observer final : public IEventObserver {
 public:
  Observer(std::string name, Told& told) : name_(std::move(name)), told_(told) {}

  int update(std::string event, std::string data, std::string source) override {
    told_.push_back(name_ + ": " + event + ' ' + data + ' ' + source);
    if (then) then();
    return -1;
  }

  std::function<void()> then;

 private:
  const std::string name_;
  Told& told_;
};

class EventServiceTest : public testing::Test {
 protected:
  QuietRegistry registry_;
  EventService events_{"program", registry_};
  Told told_;
  Observer a_{"a", told_};
  Observer b_{"b", told_};
};

TEST_F(EventServiceTest, ObserversAreToldInOrderOfRegistration) {
  EXPECT_EQ(events_.registObserver("up", &b_), C_RESULT_OK);
  EXPECT_EQ(events_.registObserver("up", &a_), C_RESULT_OK);
  EXPECT_EQ(events_.notify("up", "eth0", 0), C_RESULT_OK);
  EXPECT_EQ(told_, (Told{"b: up eth0 program", "a: up eth0 program"}));
}

TEST_F(EventServiceTest, ObserversOfOtherEventsAreNotTold) {
  events_.registObserver("up", &a_);
  EXPECT_EQ(events_.notify("down", "eth0", 0), C_RESULT_OK);
  EXPECT_EQ(told_, Told{});
}

TEST_F(EventServiceTest, ObserverRegisteredTwiceIsToldTwice) {
  events_.registObserver("up", &a_);
  events_.registObserver("up", &a_);
  events_.notify("up", "", 0);
  EXPECT_EQ(told_.size(), 2U);
}

TEST_F(EventServiceTest, UnregisteringTakesOneRegistrationAway) {
  events_.registObserver("up", &a_);
  events_.registObserver("up", &a_);
  EXPECT_EQ(events_.unregistObserver("up", &a_), C_RESULT_OK);
  events_.notify("up", "", 0);
  EXPECT_EQ(told_.size(), 1U);
}

TEST_F(EventServiceTest, UnknownObserverIsNotFound) {
  events_.registObserver("up", &a_);
  EXPECT_EQ(events_.unregistObserver("up", &b_), C_RESULT_NOT_FOUND);
  EXPECT_EQ(events_.unregistObserver("down", &a_), C_RESULT_NOT_FOUND);
  EXPECT_EQ(events_.unregistObserver("up", nullptr), C_RESULT_NOT_FOUND);
}

TEST_F(EventServiceTest, NullObserverAndUnknownFlagsAreRefused) {
  EXPECT_EQ(events_.registObserver("up", nullptr), C_RESULT_PARAM);
  events_.registObserver("up", &a_);
  EXPECT_EQ(events_.notify("up", "", 1), C_RESULT_PARAM);
  EXPECT_EQ(told_, Told{});
}

TEST_F(EventServiceTest, ObserverMayUnregisterItself) {
  a_.then = [this] { events_.unregistObserver("up", &a_); };
  events_.registObserver("up", &a_);
  events_.registObserver("up", &b_);
  events_.notify("up", "1", 0);
  events_.notify("up", "2", 0);
  EXPECT_EQ(told_, (Told{"a: up 1 program", "b: up 1 program", "b: up 2 program"}));
}

TEST_F(EventServiceTest, ObserverThatIsUnregisteredMeanwhileIsNotTold) {
  a_.then = [this] { events_.unregistObserver("up", &b_); };
  events_.registObserver("up", &a_);
  events_.registObserver("up", &b_);
  events_.notify("up", "", 0);
  EXPECT_EQ(told_, Told{"a: up  program"});
}

TEST_F(EventServiceTest, ObserverThatIsRegisteredMeanwhileIsToldOfTheNextEvent) {
  a_.then = [this] {
    a_.then = nullptr;
    events_.registObserver("up", &b_);
  };
  events_.registObserver("up", &a_);
  events_.notify("up", "1", 0);
  events_.notify("up", "2", 0);
  EXPECT_EQ(told_, (Told{"a: up 1 program", "a: up 2 program", "b: up 2 program"}));
}

TEST_F(EventServiceTest, ObserverThatIsRegisteredAnewMeanwhileIsToldOfTheNextEvent) {
  a_.then = [this] {
    a_.then = nullptr;
    events_.unregistObserver("up", &b_);
    events_.registObserver("up", &b_);
  };
  events_.registObserver("up", &a_);
  events_.registObserver("up", &b_);
  events_.notify("up", "1", 0);
  EXPECT_EQ(told_, Told{"a: up 1 program"});
}

TEST_F(EventServiceTest, ObserverMayRaiseAnEvent) {
  a_.then = [this] { events_.notify("down", "eth1", 0); };
  events_.registObserver("up", &a_);
  events_.registObserver("down", &b_);
  events_.notify("up", "eth0", 0);
  EXPECT_EQ(told_, (Told{"a: up eth0 program", "b: down eth1 program"}));
}

}  // namespace

}  // namespace host
