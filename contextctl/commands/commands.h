// SPDX-License-Identifier: MIT
// The commands, one source each. They print to the session's output, throw Failure, and return the exit
// status where a result that is no failure has one of its own.
#ifndef CPP2C_CONTEXTCTL_COMMANDS_COMMANDS_H
#define CPP2C_CONTEXTCTL_COMMANDS_COMMANDS_H

#include <string>
#include <vector>

#include "contextctl/commands/session.h"
#include "contextctl/system/failure.h"

namespace contextctl {

// Leaves.
void getValues(const Session& session, const std::vector<std::string>& names);
void setValue(const Session& session, const std::string& name, const std::string& value, bool create);
void listLeaves(const Session& session, const std::string& prefix);
void showTree(const Session& session, const std::string& prefix);

// Objects.
void listInstances(const Session& session, const std::string& object);
void addInstance(const Session& session, const std::string& name);
void deleteInstance(const Session& session, const std::string& name);
void showAttribute(const Session& session, const std::string& object);
void setAttribute(const Session& session, const std::string& object, int value);

// Streams; `count` items, 0 for all until Ctrl-C.
void watchChanges(const Session& session, const std::string& prefix, int count);
void sendEvent(const Session& session, const std::string& event, const std::string& data);
void followEvents(const Session& session, const std::string& event, int count);
void followLog(const Session& session, int count);

// The context itself.
void save(const Session& session);
void stop(const Session& session);
void listModules(const Session& session);
void listRegistrations(const Session& session);
void showStatistics(const Session& session, const std::string& trace_file);  // empty: no trace wanted
void showTop(const Session& session, double interval, int count);

// Files of leaves.
void exportTree(const Session& session, const std::string& prefix, const std::string& file);  // empty: output
ExitStatus importTree(const Session& session, const std::string& file);
ExitStatus diffTree(const Session& session, const std::string& file);

}  // namespace contextctl

#endif
