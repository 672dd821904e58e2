// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_STATE_LAY_OVER_H
#define CPP2C_HOST_STATE_LAY_OVER_H

class Database;
class ILog;
class Tree;

// Lays what is saved over the tree of the configuration. What does not fit that is told in a warning each and
// has no effect.
void layOver(const Database& database, Tree& tree, ILog& log);

#endif
