// SPDX-License-Identifier: MIT
#include "host/guard/operation.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

enum Kind { kPlain, kReturnsObject, kRelease };

struct Description {
  const char* name;
  Operation operation;
  Kind kind;
};

constexpr Description kOperations[] = {
    {"load", Operation::kLoad, kPlain},
    {"getLog", Operation::kGetLog, kReturnsObject},
    {"getCfm", Operation::kGetCfm, kReturnsObject},
    {"getEvent", Operation::kGetEvent, kReturnsObject},
    {"getHeartbeat", Operation::kGetHeartbeat, kReturnsObject},
    {"getLoop", Operation::kGetLoop, kReturnsObject},
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
    {"unregistObserver", Operation::kUnregistObserver, kRelease},
    {"registDataProvider", Operation::kRegistDataProvider, kPlain},
    {"getNode", Operation::kGetNode, kReturnsObject},
    {"releaseNode", Operation::kReleaseNode, kRelease},
    {"instanceIterator", Operation::kInstanceIterator, kReturnsObject},
    {"releaseIterator", Operation::kReleaseIterator, kRelease},
    {"setValue", Operation::kSetValue, kPlain},
    {"save", Operation::kSave, kPlain},
    {"registEventObserver", Operation::kRegistEventObserver, kPlain},
    {"unregistEventObserver", Operation::kUnregistEventObserver, kRelease},
    {"notify", Operation::kNotify, kPlain},
    {"lock", Operation::kLock, kPlain},
    {"unlock", Operation::kUnlock, kPlain},
    {"addFd", Operation::kAddFd, kPlain},
    {"delFd", Operation::kDelFd, kRelease},
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

bool returnsObject(Operation operation) {
  return describe(operation).kind == kReturnsObject;
}

bool isRelease(Operation operation) {
  return describe(operation).kind == kRelease;
}

}  // namespace host
