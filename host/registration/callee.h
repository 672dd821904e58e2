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

// Whom a callback reaches: a C function with its user pointer, or an observer written in C++.
struct Callee {
  const void* function = nullptr;
  const void* user = nullptr;
  const char* type = nullptr;  // of an observer in C++, as typeid() names it

  bool isNobody() const { return function == nullptr && type == nullptr; }
};

// The function behind an adapter of the library; the type of anything else.
Callee calleeOf(const ILoopData& handler);
Callee calleeOf(const ITimer& timer);
Callee calleeOf(const IEventObserver& observer);
Callee calleeOf(const ICfmObserver& observer);
Callee calleeOf(const IDyncDataProvider& provider);

// One operation of a participant, by its name. A table of C functions may have nobody for it.
Callee calleeOf(const IBootContext& participant, const std::string& operation);

// A C function with its place, a type with its name alone.
Symbol symbolOf(const Callee& callee);

}  // namespace host

#endif
