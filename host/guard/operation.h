// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_OPERATION_H
#define CPP2C_HOST_GUARD_OPERATION_H

#include <optional>
#include <string>

namespace host {

// Every operation of the context and its services that a program can call after init().
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

// The operation's name in the interface. Two operations of the events have namesakes in the configuration and
// are named "registEventObserver" and "unregistEventObserver".
const char* nameOf(Operation operation);
std::optional<Operation> findOperation(const std::string& name);

// Whether the operation returns an object or null. All other operations return a code.
bool returnsObject(Operation operation);

// Whether the operation ends a registration or a loan. Its caller then deletes or no longer uses the object,
// whatever the operation returns.
bool isRelease(Operation operation);

}  // namespace host

#endif
