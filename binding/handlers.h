// SPDX-License-Identifier: MIT
// What the context calls back.
//
// The context enters these interfaces by position in the virtual table, so the order of the operations is the
// contract. All operations run on the loop's thread. Strings are passed by value.
#ifndef CPP2C_BINDING_HANDLERS_H
#define CPP2C_BINDING_HANDLERS_H

#include <string>

// Told by ILoop when a watched descriptor is ready.
class ILoopData {
 public:
  virtual ~ILoopData() = default;

  virtual int handler(short events, int value) = 0;  // `value` is the loop's own, by custom the descriptor
};

// Told by the context when its timer expires.
class ITimer {
 public:
  virtual ~ITimer() = default;

  virtual int timeArrive(int value) = 0;
};

// Told by IEvent of each event that it observes.
class IEventObserver {
 public:
  virtual ~IEventObserver() = default;

  virtual int update(std::string event, std::string data, std::string source) = 0;
};

// Told by ICfm of each change of the object that it observes.
class ICfmObserver {
 public:
  virtual ~ICfmObserver() = default;

  virtual int update(int id, std::string instance, int operation, std::string leaf) = 0;
};

// Asked by ICfm for a value that is computed on demand. It has no virtual destructor: its one operation
// stands at position 1, and the context never deletes a provider.
class IDyncDataProvider {
 public:
  virtual std::string dataGet(int id, std::string instance, std::string leaf) = 0;

 protected:
  ~IDyncDataProvider() = default;
};

#endif
