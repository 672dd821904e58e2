// SPDX-License-Identifier: MIT
// A context library whose classes define each operation by its position in the virtual table and its
// arguments. It does not include the library's headers, so a test fails if an operation moves in a header.
#ifndef CPP2C_TESTS_BINDING_POSITIONS_POSITIONS_H
#define CPP2C_TESTS_BINDING_POSITIONS_POSITIONS_H

#include <string>
#include <vector>

#pragma GCC visibility push(default)

// Returns the operations called since the last takeEntered(), for example `IContext 14 (7)`.
std::vector<std::string> takeEntered();

// Returns the adapter that the context or a service received last.
void* lastAdapter();

// Creates an object of the class `IModule` of the context library.
void* newModule();

// Each calls the operation of `object` at the position in its name.
int enterLoopData3(void* object, short events, int value);
int enterTimer3(void* object, int value);
int enterEventObserver3(void* object, const std::string& event, const std::string& data,
                        const std::string& source);
int enterCfmObserver3(void* object, int id, const std::string& instance, int operation,
                      const std::string& leaf);
std::string enterDyncDataProvider1(void* object, int id, const std::string& instance,
                                   const std::string& leaf);

// Calls operation `position` of a participant. The arguments, if any, are "name" and 9.
int enterBootContext(void* object, int position);

#pragma GCC visibility pop

#endif
