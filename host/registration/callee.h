// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_CALLEE_H
#define CPP2C_HOST_REGISTRATION_CALLEE_H

#include <string>

class IBootContext;
class ICfmObserver;
class IDyncDataProvider;
class IEventObserver;
class ILoopData;
class ITimer;

namespace host {

struct Symbol;

// The target of a registration: a C function with its user pointer, or an object written in C++.
struct Callee {
  const void* function = nullptr;
  const void* user = nullptr;
  const char* type = nullptr;  // of an object written in C++: the name that typeid() gives

  bool isEmpty() const { return function == nullptr && type == nullptr; }
};

// The C function behind an adapter of the library, or the type of any other object.
Callee calleeOf(const ILoopData& handler);
Callee calleeOf(const ITimer& timer);
Callee calleeOf(const IEventObserver& observer);
Callee calleeOf(const ICfmObserver& observer);
Callee calleeOf(const IDyncDataProvider& provider);

// One operation of a participant, by name. Empty if the module's table has no C function for it.
Callee calleeOf(const IBootContext& participant, const std::string& operation);

// The name and location of a C function, or the name of a C++ type.
Symbol symbolOf(const Callee& callee);

}  // namespace host

#endif
