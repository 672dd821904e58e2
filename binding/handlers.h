// SPDX-License-Identifier: MIT
// Interfaces through which the context calls this library.
//
// The context calls the operations by their position in the virtual table: never reorder them. All operations
// run on the loop's thread. Strings are passed by value.
#ifndef CPP2C_BINDING_HANDLERS_H
#define CPP2C_BINDING_HANDLERS_H

#include <string>

// Called by ILoop when a watched descriptor is ready.
class ILoopData {
 public:
  virtual ~ILoopData() = default;

  virtual int handler(short events, int value) = 0;  // `value`: by convention the descriptor
};

// Called by the context when its timer expires.
class ITimer {
 public:
  virtual ~ITimer() = default;

  virtual int timeArrive(int value) = 0;
};

// Called by IEvent for each observed event.
class IEventObserver {
 public:
  virtual ~IEventObserver() = default;

  virtual int update(std::string event, std::string data, std::string source) = 0;
};

// Called by ICfm for each change of the observed object.
class ICfmObserver {
 public:
  virtual ~ICfmObserver() = default;

  virtual int update(int id, std::string instance, int operation, std::string leaf) = 0;
};

// Called by ICfm to compute the value of a leaf. It has no virtual destructor, so its only operation is at
// position 1; the context never deletes a provider.
class IDyncDataProvider {
 public:
  virtual std::string dataGet(int id, std::string instance, std::string leaf) = 0;

 protected:
  ~IDyncDataProvider() = default;
};

#endif
