// SPDX-License-Identifier: MIT
// A context library whose classes are written by position: they know the place of each operation in the
// virtual table, its arguments and nothing else. None of the library's headers is used on that side, so that
// an operation that moves in a header meets another one here.
#ifndef CPP2C_TESTS_BINDING_POSITIONS_POSITIONS_H
#define CPP2C_TESTS_BINDING_POSITIONS_POSITIONS_H

#include <string>
#include <vector>

#pragma GCC visibility push(default)

// The operations that have been entered since the last call of this, for example `IContext 14 (7)`.
std::vector<std::string> takeEntered();

// What the context's services have been given last: an adapter of the library.
void* lastAdapter();

// An object of the class `IModule`, made by position.
void* newModule();

// Each enters the operation of `object` that stands at the position in its name.
int enterLoopData3(void* object, short events, int value);
int enterTimer3(void* object, int value);
int enterEventObserver3(void* object, const std::string& event, const std::string& data,
                        const std::string& source);
int enterCfmObserver3(void* object, int id, const std::string& instance, int operation,
                      const std::string& leaf);
std::string enterDyncDataProvider1(void* object, int id, const std::string& instance,
                                   const std::string& leaf);

// Enters operation `position` of a participant of the lifecycle, with the name "name" and the number 9 where
// it takes them.
int enterBootContext(void* object, int position);

#pragma GCC visibility pop

#endif
