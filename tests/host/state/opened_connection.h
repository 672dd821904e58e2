// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_STATE_OPENED_CONNECTION_H
#define CPP2C_TESTS_HOST_STATE_OPENED_CONNECTION_H

#include <sqlite3.h>

namespace host {

// SQLite's own view of the connection that was opened last while this lives.
class OpenedConnection {
 public:
  OpenedConnection() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(keep)); }
  ~OpenedConnection() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(keep)); }
  OpenedConnection(const OpenedConnection&) = delete;
  OpenedConnection& operator=(const OpenedConnection&) = delete;

  sqlite3* get() const { return connection_; }

 private:
  static int keep(sqlite3* connection, const char** /*message*/, const void* /*routines*/) {
    connection_ = connection;
    return SQLITE_OK;
  }

  static inline sqlite3* connection_ = nullptr;
};

}  // namespace host

#endif
