// SPDX-License-Identifier: MIT
// The positions of the operations that the framework calls.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "boot/module.h"
#include "tests/binding/positions/positions.h"

namespace {

class LoopData : public ILoopData {
 public:
  int handler(short events, int value) override { return events * 1000 + value; }
};

class Timer : public ITimer {
 public:
  int timeArrive(int value) override { return value + 1; }
};

class EventObserver : public IEventObserver {
 public:
  int update(std::string event, std::string data, std::string source) override {
    seen = event + ' ' + data + ' ' + source;
    return 5;
  }

  std::string seen;
};

class CfmObserver : public ICfmObserver {
 public:
  int update(int id, std::string instance, int operation, std::string leaf) override {
    seen = instance + ' ' + leaf;
    return id * 1000 + operation;
  }

  std::string seen;
};

class DataProvider final : public IDyncDataProvider {
 public:
  std::string dataGet(int id, std::string instance, std::string leaf) override {
    return std::to_string(id) + ' ' + instance + ' ' + leaf;
  }
};

class Module : public IModule {
 public:
  int onLoad() override { return 3; }
  int onStart() override { return 4; }
  int onConfig(std::string name, int arg) override { return name == "name" && arg == 9 ? 5 : 0; }
  int onRun() override { return 6; }
  int onUnconfig(std::string name, int arg) override { return name == "name" && arg == 9 ? 7 : 0; }
  int onStop() override { return 8; }
  int onUnload() override { return 9; }
  int recvDependence(std::string name) override { return name == "name" ? 10 : 0; }
};

// Returns the pointer as the framework receives it.
template <typename Interface>
void* as(Interface& object) {
  return &object;
}

TEST(CallbackPositionsTest, LoopDataOperationHasItsPosition) {
  LoopData object;
  EXPECT_EQ(enterLoopData3(as<ILoopData>(object), -2, 7), -1993);
}

TEST(CallbackPositionsTest, TimerOperationHasItsPosition) {
  Timer object;
  EXPECT_EQ(enterTimer3(as<ITimer>(object), 7), 8);
}

TEST(CallbackPositionsTest, EventObserverOperationHasItsPosition) {
  EventObserver object;
  EXPECT_EQ(enterEventObserver3(as<IEventObserver>(object), "link", "up", "kernel"), 5);
  EXPECT_EQ(object.seen, "link up kernel");
}

TEST(CallbackPositionsTest, CfmObserverOperationHasItsPosition) {
  CfmObserver object;
  EXPECT_EQ(enterCfmObserver3(as<ICfmObserver>(object), 5, "A.1.", 2, "leaf"), 5002);
  EXPECT_EQ(object.seen, "A.1. leaf");
}

TEST(CallbackPositionsTest, DataProviderOperationHasItsPosition) {
  DataProvider object;
  EXPECT_EQ(enterDyncDataProvider1(as<IDyncDataProvider>(object), 5, "A.1.", "leaf"), "5 A.1. leaf");
}

TEST(CallbackPositionsTest, BootContextOperationsHaveTheirPositions) {
  Module object;
  for (int position = 3; position <= 10; ++position) {
    EXPECT_EQ(enterBootContext(as<IBootContext>(object), position), position);
    EXPECT_EQ(enterBootContext(as<IModule>(object), position), position);
  }
}

TEST(CallbackPositionsTest, DefaultsOfBootContextHaveTheirPositions) {
  IBootContext object;
  const std::vector<int> results = {0, 0, 100, 0, 100, 0, 0, 0};
  for (int position = 3; position <= 10; ++position) {
    EXPECT_EQ(enterBootContext(&object, position), results[static_cast<std::size_t>(position - 3)])
        << position;
  }
}

}  // namespace
