// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_OPERATION_H
#define CPP2C_HOST_GUARD_OPERATION_H

#include <optional>
#include <string>

namespace host {

// Every operation of the context and of its services that a program may call once there is a context.
enum class Operation {
  // of the context
  kLoad,
  kGetLog,
  kGetCfm,
  kGetEvent,
  kGetHeartbeat,
  kGetLoop,
  kDebugOut,
  kDebugSwitch,
  kSystemCall,
  kSystemCall2,
  kPopenCall,
  kRegistMasterObserver,
  kSetTimer,
  kNotifyDepends,
  // of the log
  kRecord,
  // of the configuration
  kGetAttr,
  kSetAttr,
  kRegistObserver,
  kUnregistObserver,
  kRegistDataProvider,
  kGetNode,
  kReleaseNode,
  kInstanceIterator,
  kReleaseIterator,
  kSetValue,
  kSave,
  // of the events
  kRegistEventObserver,
  kUnregistEventObserver,
  kNotify,
  // of the heartbeat
  kLock,
  kUnlock,
  // of the loop
  kAddFd,
  kDelFd,
  kRun,
};

// The operation's own name, but "registEventObserver" and "unregistEventObserver" for those of which the
// configuration has namesakes.
const char* nameOf(Operation operation);
std::optional<Operation> findOperation(const std::string& name);

// Whether the operation answers an object, or null; all others answer a code.
bool answersObject(Operation operation);

// Whether the operation ends a registration or a loan. Its caller then deletes what it had registered, or
// uses it no more, whatever the answer is.
bool takesBack(Operation operation);

}  // namespace host

#endif
