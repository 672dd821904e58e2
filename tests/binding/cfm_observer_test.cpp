// SPDX-License-Identifier: MIT
// Observers of configuration objects.
#include <string>
#include <vector>

#include "tests/support/recording_test.h"

namespace {

// The calls of a callback, and its result. The user pointer points to it.
struct Receiver {
  std::vector<std::string> changes;
  int answer = 0;
};

int receive(void* user, int id, const char* instance, int operation, const char* leaf) {
  auto* receiver = static_cast<Receiver*>(user);
  receiver->changes.push_back(std::to_string(id) + '|' + instance + '|' + std::to_string(operation) + '|' +
                              leaf);
  return receiver->answer;
}

int receiveToo(void* user, int id, const char* instance, int operation, const char* leaf) {
  return receive(user, id, instance, operation, leaf);
}

class CfmObserverTest : public RecordingTest {
 protected:
  CfmObserverTest() { c_dbc_create(); }

  Receiver receiver;
};

TEST_F(CfmObserverTest, RegistrationReachesTheServiceAndIteratesOverTheInstances) {
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.registObserver(5, object)", "cfm.instanceIterator(5)"}));
}

TEST_F(CfmObserverTest, RegistrationIgnoresTheServicesResult) {
  log.results["cfm.registObserver"] = -1;
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
}

TEST_F(CfmObserverTest, RegistrationReadsTheFirstInstanceBeforeItAdvances) {
  cfm.instances[5] = {"A.1.", "A.2."};
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.registObserver(5, object)", "cfm.instanceIterator(5)",
                            "iterator.name()", "iterator.next()", "iterator.name()", "iterator.next()",
                            "cfm.releaseIterator(5)"}));
}

TEST_F(CfmObserverTest, ObserverIsStoredAfterItsRegistrationWithTheService) {
  c_cfm_callback early = receive;
  c_cfm_callback late = nullptr;
  log.on_call = [&](const std::string& call) {
    if (call == "cfm.registObserver(5, object)") early = c_cfm_get_regist_observer_callback(5);
    if (call == "cfm.instanceIterator(5)") late = c_cfm_get_regist_observer_callback(5);
  };
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(early, nullptr);
  EXPECT_EQ(late, &receive);
}

TEST_F(CfmObserverTest, RegistrationClearsTheUserDataOfEveryInstance) {
  int place = 0;
  cfm.instances[5] = {"A.1.", "A.2."};
  c_dbc_add_userdata(5, "A.1.", &place);
  c_dbc_add_userdata(5, "A.2.", &place);
  c_dbc_add_userdata(5, "A.3.", &place);
  c_dbc_add_userdata(6, "A.1.", &place);
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(c_dbc_get_userdata(5, "A.1."), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "A.2."), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "A.3."), &place);
  EXPECT_EQ(c_dbc_get_userdata(6, "A.1."), &place);
}

TEST_F(CfmObserverTest, RegistrationWithoutInstancesStoresTheObserver) {
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
}

TEST_F(CfmObserverTest, RegistrationWithoutAServiceStoresNothing) {
  context.missing.insert("getCfm");
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));

  context.missing.clear();
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
}

TEST_F(CfmObserverTest, ChangeReachesTheCallback) {
  receiver.answer = -9;
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(cfm.registered[0].observer->update(5, "A.1.", -2, "speed"), -9);
  EXPECT_EQ(receiver.changes, std::vector<std::string>({"5|A.1.|-2|speed"}));
}

TEST_F(CfmObserverTest, CallbackReceivesTheObjectGivenByTheService) {
  c_cfm_regist_observer(5, receive, &receiver);
  cfm.registered[0].observer->update(6, "B.1.", 1, "");
  EXPECT_EQ(receiver.changes, std::vector<std::string>({"6|B.1.|1|"}));
}

TEST_F(CfmObserverTest, CallbackReceivesStringsUpToAnEmbeddedNul) {
  c_cfm_regist_observer(5, receive, &receiver);
  cfm.registered[0].observer->update(5, std::string("A\0.1", 4), 1, std::string("\0speed", 6));
  EXPECT_EQ(receiver.changes, std::vector<std::string>({"5|A|1|"}));
}

TEST_F(CfmObserverTest, ObserverWithoutACallbackReturnsNoCallback) {
  c_cfm_regist_observer(5, nullptr, &receiver);
  EXPECT_EQ(cfm.registered[0].observer->update(5, "A.1.", 1, "speed"), -1024);
  EXPECT_TRUE(receiver.changes.empty());
}

TEST_F(CfmObserverTest, UnregistrationPassesTheObserverToTheService) {
  c_cfm_regist_observer(5, receive, &receiver);
  calls();
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.unregistObserver(5, object)"}));
  EXPECT_EQ(cfm.unregistered[0].observer, cfm.registered[0].observer);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
}

TEST_F(CfmObserverTest, CacheIsClearedBeforeTheServiceRemovesTheObserver) {
  int place = 0;
  void* kept = &place;
  c_cfm_regist_observer(5, receive, &receiver);
  c_dbc_add_userdata(5, "A.1.", &place);
  log.on_call = [&kept](const std::string& call) {
    if (call == "cfm.unregistObserver(5, object)") kept = c_dbc_get_userdata(5, "A.1.");
  };
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(kept, nullptr);
}

TEST_F(CfmObserverTest, UnregistrationKeepsOtherObjectsInTheCache) {
  int place = 0;
  c_cfm_regist_observer(5, receive, &receiver);
  c_dbc_add_userdata(6, "A.1.", &place);
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(c_dbc_get_userdata(6, "A.1."), &place);
}

TEST_F(CfmObserverTest, ObserverExistsUntilTheServiceHasRemovedIt) {
  c_cfm_callback known = nullptr;
  c_cfm_regist_observer(5, receive, &receiver);
  log.on_call = [&](const std::string& call) {
    if (call != "cfm.unregistObserver(5, object)") return;
    known = c_cfm_get_regist_observer_callback(5);
    cfm.registered[0].observer->update(5, "A.1.", 3, "");
  };
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(known, &receive);
  EXPECT_EQ(receiver.changes, std::vector<std::string>({"5|A.1.|3|"}));
}

TEST_F(CfmObserverTest, UnregistrationWithAnotherObjectMatchesNothing) {
  int place = 0;
  c_cfm_regist_observer(5, receive, &receiver);
  c_dbc_add_userdata(6, "A.1.", &place);
  calls();
  c_cfm_unregist_observer(6, receive);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
  EXPECT_EQ(c_dbc_get_userdata(6, "A.1."), &place);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
}

TEST_F(CfmObserverTest, UnregistrationWithAnotherFunctionMatchesNothing) {
  int place = 0;
  c_cfm_regist_observer(5, receive, &receiver);
  c_dbc_add_userdata(5, "A.1.", &place);
  calls();
  c_cfm_unregist_observer(5, receiveToo);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
  EXPECT_EQ(c_dbc_get_userdata(5, "A.1."), &place);
}

TEST_F(CfmObserverTest, UnregistrationRemovesTheOldestMatch) {
  c_cfm_regist_observer(5, receiveToo, &receiver);
  c_cfm_regist_observer(6, receive, &receiver);
  c_cfm_regist_observer(5, receive, &receiver);
  c_cfm_regist_observer(5, receive, &receiver);
  c_cfm_unregist_observer(5, receive);
  ASSERT_EQ(cfm.unregistered.size(), 1U);
  EXPECT_EQ(cfm.unregistered[0].observer, cfm.registered[2].observer);
  c_cfm_unregist_observer(5, receive);
  ASSERT_EQ(cfm.unregistered.size(), 2U);
  EXPECT_EQ(cfm.unregistered[1].observer, cfm.registered[3].observer);
}

TEST_F(CfmObserverTest, UnregistrationWithoutAServiceKeepsObserverAndCache) {
  int place = 0;
  c_cfm_regist_observer(5, receive, &receiver);
  c_dbc_add_userdata(5, "A.1.", &place);
  context.missing.insert("getCfm");
  calls();
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));

  context.missing.clear();
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
  EXPECT_EQ(c_dbc_get_userdata(5, "A.1."), &place);
}

TEST_F(CfmObserverTest, LookupOnlyGetsTheService) {
  c_cfm_regist_observer(5, receive, &receiver);
  calls();
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
}

TEST_F(CfmObserverTest, LookupFindsTheOldestObserverOfAnObject) {
  c_cfm_regist_observer(4, receiveToo, &receiver);
  c_cfm_regist_observer(5, receive, &receiver);
  c_cfm_regist_observer(5, receiveToo, &receiver);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receive);
  c_cfm_unregist_observer(5, receive);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), &receiveToo);
}

TEST_F(CfmObserverTest, LookupOfAnUnknownObjectFindsNothing) {
  c_cfm_regist_observer(5, receive, &receiver);
  EXPECT_EQ(c_cfm_get_regist_observer_callback(-5), nullptr);
}

TEST_F(CfmObserverTest, LookupWithoutAServiceFindsNothing) {
  c_cfm_regist_observer(5, receive, &receiver);
  context.missing.insert("getCfm");
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
}

TEST_F(CfmObserverTest, LookupWithoutAContextFindsNothing) {
  c_cfm_regist_observer(5, receive, &receiver);
  releaseContext(nullptr);
  proxy.instance = nullptr;
  EXPECT_EQ(c_cfm_get_regist_observer_callback(5), nullptr);
}

}  // namespace
