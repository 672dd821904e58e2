// SPDX-License-Identifier: MIT
// Interfaces of the framework's context and of its services.
//
// The context library implements these interfaces. This library calls the operations by their position in
// the virtual table: never reorder, insert or remove one. The virtual destructor occupies positions 1 and 2.
// `reservedN` fills position N, which this library never calls.
//
// Each operation runs on the thread that calls the corresponding C function, normally the thread that runs
// the loop. The context owns the service objects and alone deletes them. Strings are passed by value.
#ifndef CPP2C_BINDING_CONTEXT_H
#define CPP2C_BINDING_CONTEXT_H

#include <cstdint>
#include <string>

class IBootContext;
class ICfmObserver;
class IDyncDataProvider;
class IEventObserver;
class ILoopData;
class ITimer;

// The log service.
class ILog {
 public:
  virtual ~ILog() = default;

  // Writes one record. The caller defines the meaning of `level`. `text` is valid only during the call.
  virtual int record(std::string module, int level, const char* text) = 0;
};

// One leaf of the configuration tree. Obtained with ICfm::getNode(), released with ICfm::releaseNode().
class ICfmNode {
 public:
  virtual ~ICfmNode() = default;

  virtual std::string getType() = 0;
  virtual std::string getValue() = 0;
  virtual int reserved5() = 0;
  virtual unsigned int getLength() = 0;  // length of the value, as defined by the service
};

// Iterator over the instances of one object. Obtained with ICfm::instanceIterator(), released with
// ICfm::releaseIterator(). At first, the current instance is the first one.
class ICfmIterator {
 public:
  virtual ~ICfmIterator() = default;

  virtual int next() = 0;  // advances; non-zero if there is a current instance
  virtual int reserved4() = 0;
  virtual int reserved5() = 0;
  virtual std::string name() = 0;  // name of the current instance
};

// The configuration service.
class ICfm {
 public:
  virtual ~ICfm() = default;

  virtual int getAttr(int node, void* out) = 0;
  virtual int reserved4() = 0;
  virtual int setAttr(int node, int value) = 0;
  virtual int reserved6() = 0;
  virtual int registObserver(int id, ICfmObserver* observer) = 0;
  virtual int unregistObserver(int id, ICfmObserver* observer) = 0;
  virtual ICfmNode* getNode(std::string fullname) = 0;  // null if there is no such leaf
  virtual int releaseNode(ICfmNode* node) = 0;
  virtual int reserved11() = 0;
  virtual int reserved12() = 0;
  virtual int reserved13() = 0;
  virtual ICfmIterator* instanceIterator(int id) = 0;  // null if the object has no instance
  virtual int releaseIterator(ICfmIterator* iterator) = 0;
  virtual int reserved16() = 0;
  virtual int setValue(std::string fullname, std::string value, int option) = 0;
  virtual int registDataProvider(int id, IDyncDataProvider* provider) = 0;
  virtual int save(int scope) = 0;  // this library always passes 1
};

// The event service.
class IEvent {
 public:
  virtual ~IEvent() = default;

  virtual int registObserver(std::string event, IEventObserver* observer) = 0;
  virtual int unregistObserver(std::string event, IEventObserver* observer) = 0;
  virtual int notify(std::string event, std::string data, int flags) = 0;  // this library always passes 0
};

// The watchdog, which detects callbacks that block the loop for too long. lock() suspends it, unlock()
// resumes it.
class IHeartbeat {
 public:
  virtual ~IHeartbeat() = default;

  virtual int reserved3() = 0;
  virtual int reserved4() = 0;
  virtual int reserved5() = 0;
  virtual int reserved6() = 0;
  virtual int reserved7() = 0;
  virtual int reserved8() = 0;
  virtual int lock() = 0;
  virtual int unlock() = 0;
};

// The event loop.
class ILoop {
 public:
  virtual ~ILoop() = default;

  virtual int addFd(int fd, int events, ILoopData* handler) = 0;  // for a watched fd: replaces the mask
  virtual int delFd(int fd) = 0;  // on return, the handler of `fd` is not called any more
  virtual int reserved5() = 0;
  virtual int run() = 0;  // blocks until the loop is stopped
};

// The framework's central object. The entry point "getInstance" of the context library returns it, and the
// entry point "relInstance" releases it.
class IContext {
 public:
  virtual ~IContext() = default;

  virtual int init(std::uintptr_t arg1, std::uintptr_t arg2) = 0;  // arguments of c_context_init()
  virtual int load() = 0;
  virtual int reserved5() = 0;
  virtual ILog* getLog() = 0;  // null if there is no such service; likewise for the others
  virtual ICfm* getCfm() = 0;
  virtual IEvent* getEvent() = 0;
  virtual IHeartbeat* getHeartbeat() = 0;
  virtual ILoop* getLoop() = 0;
  virtual int reserved11() = 0;
  virtual int reserved12() = 0;
  // Shows one diagnostic, if debug output is switched on.
  virtual int debugOut(const char* file, int line, const char* text) = 0;
  virtual int debugSwitch(int value) = 0;
  virtual int systemCall(const char* command) = 0;
  virtual int systemCall2(const char* command) = 0;
  virtual int popenCall(const char* command) = 0;
  virtual int reserved18() = 0;
  virtual int registMasterObserver(IBootContext* observer) = 0;
  virtual int setTimer(int first, int zero, int second, ITimer* timer) = 0;  // `zero` is always 0
  virtual int reserved21() = 0;
  virtual int reserved22() = 0;
  virtual int reserved23() = 0;
  virtual int notifyDepends(std::string name) = 0;
};

#endif
