// SPDX-License-Identifier: MIT
// The positions of the operations of the context and its services.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "binding/context.h"
#include "binding/dll_mgr.h"
#include "tests/binding/positions/positions.h"

namespace {

using Entered = std::vector<std::string>;

class ContextPositionsTest : public testing::Test {
 protected:
  ContextPositionsTest() { takeEntered(); }
  ~ContextPositionsTest() override { releaseContext(nullptr); }

  IContext& context = *getContext();
};

TEST_F(ContextPositionsTest, ContextOperationsHaveTheirPositions) {
  EXPECT_EQ(context.init(1, UINTPTR_MAX), 30);
  EXPECT_EQ(context.load(), 40);
  EXPECT_EQ(context.debugOut("file", 2, "text"), 130);
  EXPECT_EQ(context.debugSwitch(3), 140);
  EXPECT_EQ(context.systemCall("a"), 150);
  EXPECT_EQ(context.systemCall2("b"), 160);
  EXPECT_EQ(context.popenCall("c"), 170);
  EXPECT_EQ(context.registMasterObserver(nullptr), 190);
  EXPECT_EQ(context.setTimer(4, 0, 5, nullptr), 200);
  EXPECT_EQ(context.notifyDepends("net"), 240);
  EXPECT_EQ(takeEntered(), Entered({"IContext 3 (1, " + std::to_string(UINTPTR_MAX) + ")", "IContext 4 ()",
                                    "IContext 13 (file, 2, text)", "IContext 14 (3)", "IContext 15 (a)",
                                    "IContext 16 (b)", "IContext 17 (c)", "IContext 19 (adapter)",
                                    "IContext 20 (4, 0, 5, adapter)", "IContext 24 (net)"}));
}

TEST_F(ContextPositionsTest, ServiceGettersHaveTheirPositions) {
  EXPECT_NE(context.getLog(), nullptr);
  EXPECT_NE(context.getCfm(), nullptr);
  EXPECT_NE(context.getEvent(), nullptr);
  EXPECT_NE(context.getHeartbeat(), nullptr);
  EXPECT_NE(context.getLoop(), nullptr);
  EXPECT_EQ(takeEntered(),
            Entered({"IContext 6 ()", "IContext 7 ()", "IContext 8 ()", "IContext 9 ()", "IContext 10 ()"}));
}

TEST_F(ContextPositionsTest, LogOperationsHaveTheirPositions) {
  ILog* log = context.getLog();
  takeEntered();
  EXPECT_EQ(log->record("module", 3, "text"), 30);
  EXPECT_EQ(takeEntered(), Entered({"ILog 3 (module, 3, text)"}));
}

TEST_F(ContextPositionsTest, ConfigurationServiceOperationsHaveTheirPositions) {
  ICfm* cfm = context.getCfm();
  takeEntered();
  EXPECT_EQ(cfm->getAttr(1, nullptr), 30);
  EXPECT_EQ(cfm->setAttr(1, 2), 50);
  EXPECT_EQ(cfm->registObserver(3, nullptr), 70);
  EXPECT_EQ(cfm->unregistObserver(4, nullptr), 80);
  EXPECT_EQ(cfm->setValue("A.B", "text", 5), 170);
  EXPECT_EQ(cfm->registDataProvider(6, nullptr), 180);
  EXPECT_EQ(cfm->save(1), 190);
  EXPECT_EQ(takeEntered(),
            Entered({"ICfm 3 (1, adapter)", "ICfm 5 (1, 2)", "ICfm 7 (3, adapter)", "ICfm 8 (4, adapter)",
                     "ICfm 17 (A.B, text, 5)", "ICfm 18 (6, adapter)", "ICfm 19 (1)"}));
}

TEST_F(ContextPositionsTest, NodeOperationsHaveTheirPositions) {
  ICfm* cfm = context.getCfm();
  ICfmNode* node = cfm->getNode("A.B");
  EXPECT_EQ(node->getType(), "str");
  EXPECT_EQ(node->getValue(), "text");
  EXPECT_EQ(node->getLength(), 4U);
  EXPECT_EQ(cfm->releaseNode(node), 0);
  EXPECT_EQ(takeEntered(), Entered({"IContext 7 ()", "ICfm 9 (A.B)", "ICfmNode 3 ()", "ICfmNode 4 ()",
                                    "ICfmNode 6 ()", "ICfm 10 ()"}));
}

TEST_F(ContextPositionsTest, IteratorOperationsHaveTheirPositions) {
  ICfm* cfm = context.getCfm();
  ICfmIterator* iterator = cfm->instanceIterator(5);
  EXPECT_EQ(iterator->name(), "A.1.");
  EXPECT_EQ(iterator->next(), 0);
  EXPECT_EQ(cfm->releaseIterator(iterator), 0);
  EXPECT_EQ(takeEntered(), Entered({"IContext 7 ()", "ICfm 14 (5)", "ICfmIterator 6 ()", "ICfmIterator 3 ()",
                                    "ICfm 15 ()"}));
}

TEST_F(ContextPositionsTest, EventServiceOperationsHaveTheirPositions) {
  IEvent* event = context.getEvent();
  takeEntered();
  EXPECT_EQ(event->registObserver("link", nullptr), 30);
  EXPECT_EQ(event->unregistObserver("link", nullptr), 40);
  EXPECT_EQ(event->notify("link", "up", 0), 50);
  EXPECT_EQ(takeEntered(),
            Entered({"IEvent 3 (link, adapter)", "IEvent 4 (link, adapter)", "IEvent 5 (link, up, 0)"}));
}

TEST_F(ContextPositionsTest, HeartbeatOperationsHaveTheirPositions) {
  IHeartbeat* heartbeat = context.getHeartbeat();
  takeEntered();
  EXPECT_EQ(heartbeat->lock(), 90);
  EXPECT_EQ(heartbeat->unlock(), 100);
  EXPECT_EQ(takeEntered(), Entered({"IHeartbeat 9 ()", "IHeartbeat 10 ()"}));
}

TEST_F(ContextPositionsTest, LoopOperationsHaveTheirPositions) {
  ILoop* loop = context.getLoop();
  takeEntered();
  EXPECT_EQ(loop->addFd(7, 1, nullptr), 30);
  EXPECT_EQ(loop->delFd(7), 40);
  EXPECT_EQ(loop->run(), 60);
  EXPECT_EQ(takeEntered(), Entered({"ILoop 3 (7, 1, adapter)", "ILoop 4 (7)", "ILoop 6 ()"}));
}

}  // namespace
