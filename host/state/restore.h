// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_RESTORE_H
#define CPP2C_HOST_STATE_RESTORE_H

class ILog;

namespace host {

class Database;
class Tree;

// Applies the saved state to the tree of the configuration. What no longer fits the configuration is ignored,
// with one warning each.
void restoreTree(const Database& database, Tree& tree, ILog& log);

}  // namespace host

#endif
