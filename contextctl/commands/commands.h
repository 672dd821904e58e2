// SPDX-License-Identifier: MIT
// The commands by subject. Each function adds its commands to the set.
#ifndef CPP2C_CONTEXTCTL_COMMANDS_COMMANDS_H
#define CPP2C_CONTEXTCTL_COMMANDS_COMMANDS_H

namespace contextctl {

class CommandSet;

void addLeafCommands(CommandSet& commands);        // get, set, list, tree
void addObjectCommands(CommandSet& commands);      // instances, add, del, attribute
void addFollowCommands(CommandSet& commands);      // follow
void addEventCommands(CommandSet& commands);       // event
void addContextCommands(CommandSet& commands);     // save, stop, modules, registrations
void addStatsCommand(CommandSet& commands);        // stats
void addTopCommand(CommandSet& commands);          // top
void addLeafFileCommands(CommandSet& commands);    // export, import, diff
void addInspectCommand(CommandSet& commands);      // inspect
void addCompletionCommands(CommandSet& commands);  // completion

}  // namespace contextctl

#endif
