// SPDX-License-Identifier: MIT
#include "context/guard/operation.h"

#include <algorithm>
#include <iterator>

namespace {

enum Nature { kPlain, kAnswersObject, kTakesBack };

struct Description {
  Operation operation;
  const char* name;
  Nature nature;
};

constexpr Description kOperations[] = {
    {Operation::kLoad, "load", kPlain},
    {Operation::kGetLog, "getLog", kAnswersObject},
    {Operation::kGetCfm, "getCfm", kAnswersObject},
    {Operation::kGetEvent, "getEvent", kAnswersObject},
    {Operation::kGetHeartbeat, "getHeartbeat", kAnswersObject},
    {Operation::kGetLoop, "getLoop", kAnswersObject},
    {Operation::kDebugOut, "debugOut", kPlain},
    {Operation::kDebugSwitch, "debugSwitch", kPlain},
    {Operation::kSystemCall, "systemCall", kPlain},
    {Operation::kSystemCall2, "systemCall2", kPlain},
    {Operation::kPopenCall, "popenCall", kPlain},
    {Operation::kRegistMasterObserver, "registMasterObserver", kPlain},
    {Operation::kSetTimer, "setTimer", kPlain},
    {Operation::kNotifyDepends, "notifyDepends", kPlain},
    {Operation::kRecord, "record", kPlain},
    {Operation::kGetAttr, "getAttr", kPlain},
    {Operation::kSetAttr, "setAttr", kPlain},
    {Operation::kRegistObserver, "registObserver", kPlain},
    {Operation::kUnregistObserver, "unregistObserver", kTakesBack},
    {Operation::kRegistDataProvider, "registDataProvider", kPlain},
    {Operation::kGetNode, "getNode", kAnswersObject},
    {Operation::kReleaseNode, "releaseNode", kTakesBack},
    {Operation::kInstanceIterator, "instanceIterator", kAnswersObject},
    {Operation::kReleaseIterator, "releaseIterator", kTakesBack},
    {Operation::kSetValue, "setValue", kPlain},
    {Operation::kSave, "save", kPlain},
    {Operation::kRegistEventObserver, "registEventObserver", kPlain},
    {Operation::kUnregistEventObserver, "unregistEventObserver", kTakesBack},
    {Operation::kNotify, "notify", kPlain},
    {Operation::kLock, "lock", kPlain},
    {Operation::kUnlock, "unlock", kPlain},
    {Operation::kAddFd, "addFd", kPlain},
    {Operation::kDelFd, "delFd", kTakesBack},
    {Operation::kRun, "run", kPlain},
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
