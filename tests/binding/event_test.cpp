// SPDX-License-Identifier: MIT
// Event observers, and events raised through the C interface.
#include <string>
#include <vector>

#include "tests/support/recording_test.h"

namespace {

// The calls of a callback, and its result. The user pointer points to it.
struct Receiver {
  std::vector<std::string> events;
  int answer = 0;
};

int receive(void* user, const char* event, const char* data, const char* source) {
  auto* receiver = static_cast<Receiver*>(user);
  receiver->events.push_back(std::string(event) + '|' + data + '|' + source);
  return receiver->answer;
}

int receiveToo(void* user, const char* event, const char* data, const char* source) {
  return receive(user, event, data, source);
}

class EventTest : public RecordingTest {
 protected:
  RecordingEvent& event = context.event;
  Receiver receiver;
};

TEST_F(EventTest, RegistrationReachesTheService) {
  c_event_regist_observer("link", receive, &receiver);
  EXPECT_EQ(calls(), Calls({"context.getEvent()", "event.registObserver('link', object)"}));
}

TEST_F(EventTest, RegistrationIgnoresTheServicesResult) {
  log.results["event.registObserver"] = -1;
  c_event_regist_observer("link", receive, &receiver);
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(event.unregistered.size(), 1U);
}

TEST_F(EventTest, ObserverIsStoredAfterItsRegistrationWithTheService) {
  log.on_call = [](const std::string& call) {
    if (call == "event.registObserver('link', object)") c_event_unregist_observer("link", receive);
  };
  c_event_regist_observer("link", receive, &receiver);
  EXPECT_TRUE(event.unregistered.empty());
}

TEST_F(EventTest, EventReachesTheCallback) {
  receiver.answer = -9;
  c_event_regist_observer("link", receive, &receiver);
  EXPECT_EQ(event.registered[0].observer->update("link", "up", "kernel"), -9);
  EXPECT_EQ(receiver.events, std::vector<std::string>({"link|up|kernel"}));
}

TEST_F(EventTest, CallbackReceivesStringsUpToAnEmbeddedNul) {
  c_event_regist_observer("link", receive, &receiver);
  event.registered[0].observer->update(std::string("li\0nk", 5), std::string("\0up", 3), "k");
  EXPECT_EQ(receiver.events, std::vector<std::string>({"li||k"}));
}

TEST_F(EventTest, LongStringsReachTheCallbackUntruncated) {
  const std::string data(100000, 'd');
  c_event_regist_observer("link", receive, &receiver);
  event.registered[0].observer->update("link", data, "");
  EXPECT_EQ(receiver.events, std::vector<std::string>({"link|" + data + "|"}));
}

TEST_F(EventTest, ObserverWithoutACallbackReturnsNoCallback) {
  c_event_regist_observer("link", nullptr, &receiver);
  EXPECT_EQ(event.registered[0].observer->update("link", "up", "kernel"), -1024);
  EXPECT_TRUE(receiver.events.empty());
}

TEST_F(EventTest, RegisteringAFunctionTwiceCreatesTwoObservers) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_regist_observer("link", receive, &receiver);
  ASSERT_EQ(event.registered.size(), 2U);
  EXPECT_NE(event.registered[0].observer, event.registered[1].observer);
}

TEST_F(EventTest, RegistrationWithoutAServiceStoresNothing) {
  context.missing.insert("getEvent");
  c_event_regist_observer("link", receive, &receiver);
  EXPECT_EQ(calls(), Calls({"context.getEvent()"}));

  context.missing.clear();
  c_event_unregist_observer("link", receive);
  EXPECT_TRUE(event.unregistered.empty());
}

TEST_F(EventTest, UnregistrationPassesTheObserverToTheService) {
  c_event_regist_observer("link", receive, &receiver);
  calls();
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(calls(), Calls({"context.getEvent()", "event.unregistObserver('link', object)"}));
  EXPECT_EQ(event.unregistered[0].observer, event.registered[0].observer);
}

TEST_F(EventTest, UnregistrationRemovesTheOldestObserverOfTheFunction) {
  c_event_regist_observer("link", receiveToo, &receiver);
  c_event_regist_observer("link", receive, &receiver);
  c_event_regist_observer("link", receive, &receiver);
  c_event_unregist_observer("link", receive);
  ASSERT_EQ(event.unregistered.size(), 1U);
  EXPECT_EQ(event.unregistered[0].observer, event.registered[1].observer);
  c_event_unregist_observer("link", receive);
  ASSERT_EQ(event.unregistered.size(), 2U);
  EXPECT_EQ(event.unregistered[1].observer, event.registered[2].observer);
}

TEST_F(EventTest, UnregistrationIgnoresTheEventName) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_regist_observer("route", receive, nullptr);
  calls();
  c_event_unregist_observer("route", receive);
  EXPECT_EQ(calls(), Calls({"context.getEvent()", "event.unregistObserver('route', object)"}));
  EXPECT_EQ(event.unregistered[0].observer, event.registered[0].observer);
}

TEST_F(EventTest, UnregistrationOfNullRemovesTheObserverWithoutACallback) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_regist_observer("link", nullptr, &receiver);
  c_event_unregist_observer("link", nullptr);
  ASSERT_EQ(event.unregistered.size(), 1U);
  EXPECT_EQ(event.unregistered[0].observer, event.registered[1].observer);
}

TEST_F(EventTest, UnregistrationOfAnUnknownFunctionDoesNotReachTheService) {
  c_event_regist_observer("link", receive, &receiver);
  calls();
  c_event_unregist_observer("link", receiveToo);
  EXPECT_EQ(calls(), Calls({"context.getEvent()"}));
}

TEST_F(EventTest, SecondUnregistrationDoesNotReachTheService) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_unregist_observer("link", receive);
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(event.unregistered.size(), 1U);
}

TEST_F(EventTest, UnregisteredObserverCanStillBeCalled) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_unregist_observer("link", receive);
  event.registered[0].observer->update("link", "late", "kernel");
  EXPECT_EQ(receiver.events, std::vector<std::string>({"link|late|kernel"}));
}

TEST_F(EventTest, UnregisteredObserverSurvivesTheTeardown) {
  c_event_regist_observer("link", receive, &receiver);
  c_event_unregist_observer("link", receive);
  c_context_deinit();
  event.registered[0].observer->update("link", "later", "kernel");
  EXPECT_EQ(receiver.events, std::vector<std::string>({"link|later|kernel"}));
}

TEST_F(EventTest, UnregistrationWithoutAServiceKeepsTheObserver) {
  c_event_regist_observer("link", receive, &receiver);
  context.missing.insert("getEvent");
  calls();
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(calls(), Calls({"context.getEvent()"}));

  context.missing.clear();
  c_event_unregist_observer("link", receive);
  EXPECT_EQ(event.unregistered.size(), 1U);
}

TEST_F(EventTest, NotificationReachesTheServiceWithFlagsZero) {
  c_event_notify("link", "up");
  EXPECT_EQ(calls(), Calls({"context.getEvent()", "event.notify('link', 'up', 0)"}));
}

TEST_F(EventTest, NotificationMayBeEmpty) {
  c_event_notify("", "");
  EXPECT_EQ(calls(), Calls({"context.getEvent()", "event.notify('', '', 0)"}));
}

TEST_F(EventTest, NotificationWithoutAServiceDoesNothing) {
  context.missing.insert("getEvent");
  c_event_notify("link", "up");
  EXPECT_EQ(calls(), Calls({"context.getEvent()"}));
}

TEST_F(EventTest, NamesMayBeLong) {
  const std::string name(70000, 'n');
  c_event_regist_observer(name.c_str(), receive, &receiver);
  EXPECT_EQ(event.registered[0].event, name);
}

}  // namespace
