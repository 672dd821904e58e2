// SPDX-License-Identifier: MIT
#include "host/guard/operation.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

enum Nature { kPlain, kAnswersObject, kTakesBack };

struct Description {
  const char* name;
  Operation operation;
  Nature nature;
};

constexpr Description kOperations[] = {
    {"load", Operation::kLoad, kPlain},
    {"getLog", Operation::kGetLog, kAnswersObject},
    {"getCfm", Operation::kGetCfm, kAnswersObject},
    {"getEvent", Operation::kGetEvent, kAnswersObject},
    {"getHeartbeat", Operation::kGetHeartbeat, kAnswersObject},
    {"getLoop", Operation::kGetLoop, kAnswersObject},
    {"debugOut", Operation::kDebugOut, kPlain},
    {"debugSwitch", Operation::kDebugSwitch, kPlain},
    {"systemCall", Operation::kSystemCall, kPlain},
    {"systemCall2", Operation::kSystemCall2, kPlain},
    {"popenCall", Operation::kPopenCall, kPlain},
    {"registMasterObserver", Operation::kRegistMasterObserver, kPlain},
    {"setTimer", Operation::kSetTimer, kPlain},
    {"notifyDepends", Operation::kNotifyDepends, kPlain},
    {"record", Operation::kRecord, kPlain},
    {"getAttr", Operation::kGetAttr, kPlain},
    {"setAttr", Operation::kSetAttr, kPlain},
    {"registObserver", Operation::kRegistObserver, kPlain},
    {"unregistObserver", Operation::kUnregistObserver, kTakesBack},
    {"registDataProvider", Operation::kRegistDataProvider, kPlain},
    {"getNode", Operation::kGetNode, kAnswersObject},
    {"releaseNode", Operation::kReleaseNode, kTakesBack},
    {"instanceIterator", Operation::kInstanceIterator, kAnswersObject},
    {"releaseIterator", Operation::kReleaseIterator, kTakesBack},
    {"setValue", Operation::kSetValue, kPlain},
    {"save", Operation::kSave, kPlain},
    {"registEventObserver", Operation::kRegistEventObserver, kPlain},
    {"unregistEventObserver", Operation::kUnregistEventObserver, kTakesBack},
    {"notify", Operation::kNotify, kPlain},
    {"lock", Operation::kLock, kPlain},
    {"unlock", Operation::kUnlock, kPlain},
    {"addFd", Operation::kAddFd, kPlain},
    {"delFd", Operation::kDelFd, kTakesBack},
    {"run", Operation::kRun, kPlain},
};

const Description& describe(Operation operation) {
  return *std::find_if(std::begin(kOperations), std::end(kOperations),
                       [&](const Description& d) { return d.operation == operation; });
}

}  // namespace

const char* nameOf(Operation operation) {
  return describe(operation).name;
}

std::optional<Operation> findOperation(const std::string& name) {
  const auto* found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                   [&](const Description& d) { return name == d.name; });
  if (found == std::end(kOperations)) return std::nullopt;
  return found->operation;
}

bool answersObject(Operation operation) {
  return describe(operation).nature == kAnswersObject;
}

bool takesBack(Operation operation) {
  return describe(operation).nature == kTakesBack;
}

}  // namespace host
