// SPDX-License-Identifier: MIT
#include "context/guard/operation.h"

#include <algorithm>
#include <iterator>

namespace {

enum Answer { kCode, kObject };

struct Description {
  Operation operation;
  const char* name;
  Answer answer;
};

constexpr Description kOperations[] = {
    {Operation::kLoad, "load", kCode},
    {Operation::kGetLog, "getLog", kObject},
    {Operation::kGetCfm, "getCfm", kObject},
    {Operation::kGetEvent, "getEvent", kObject},
    {Operation::kGetHeartbeat, "getHeartbeat", kObject},
    {Operation::kGetLoop, "getLoop", kObject},
    {Operation::kDebugOut, "debugOut", kCode},
    {Operation::kDebugSwitch, "debugSwitch", kCode},
    {Operation::kSystemCall, "systemCall", kCode},
    {Operation::kSystemCall2, "systemCall2", kCode},
    {Operation::kPopenCall, "popenCall", kCode},
    {Operation::kRegistMasterObserver, "registMasterObserver", kCode},
    {Operation::kSetTimer, "setTimer", kCode},
    {Operation::kNotifyDepends, "notifyDepends", kCode},
    {Operation::kRecord, "record", kCode},
    {Operation::kGetAttr, "getAttr", kCode},
    {Operation::kSetAttr, "setAttr", kCode},
    {Operation::kRegistObserver, "registObserver", kCode},
    {Operation::kUnregistObserver, "unregistObserver", kCode},
    {Operation::kRegistDataProvider, "registDataProvider", kCode},
    {Operation::kGetNode, "getNode", kObject},
    {Operation::kReleaseNode, "releaseNode", kCode},
    {Operation::kInstanceIterator, "instanceIterator", kObject},
    {Operation::kReleaseIterator, "releaseIterator", kCode},
    {Operation::kSetValue, "setValue", kCode},
    {Operation::kSave, "save", kCode},
    {Operation::kRegistEventObserver, "registEventObserver", kCode},
    {Operation::kUnregistEventObserver, "unregistEventObserver", kCode},
    {Operation::kNotify, "notify", kCode},
    {Operation::kLock, "lock", kCode},
    {Operation::kUnlock, "unlock", kCode},
    {Operation::kAddFd, "addFd", kCode},
    {Operation::kDelFd, "delFd", kCode},
    {Operation::kRun, "run", kCode},
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
  return describe(operation).answer == kObject;
}
