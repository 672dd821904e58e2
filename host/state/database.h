// SPDX-License-Identifier: MIT
// SQLite, with owners for what it lends and exceptions for what it refuses.
#ifndef CPP2C_HOST_STATE_DATABASE_H
#define CPP2C_HOST_STATE_DATABASE_H

#include <memory>
#include <string>
#include <string_view>

#include "host/start_error.h"

struct sqlite3;
struct sqlite3_stmt;

// What went wrong, in one line that begins with the name of the file.
class DatabaseError final : public StartError {
 public:
  using StartError::StartError;
};

class Database {
 public:
  explicit Database(const std::string& file);  // which must exist

  // Runs one statement. It may give rows, of which the last two hand out the first column of the first.
  void execute(const char* sql);
  int number(const char* sql);
  std::string text(const char* sql);

  bool isReadOnly() const;
  void rollBack() noexcept;  // in vain if SQLite has rolled back already

 private:
  friend class Statement;

  struct Close {
    void operator()(sqlite3* connection) const;
  };

  std::string file_;
  std::unique_ptr<sqlite3, Close> connection_;
};

// A prepared statement, for as long as its database is there.
class Statement {
 public:
  Statement(const Database& database, const char* sql);

  // Runs the statement with the arguments, texts and numbers, in place of its question marks.
  template <typename... Arguments>
  void run(const Arguments&... arguments) {
    int position = 0;
    (bind(++position, arguments), ...);
    while (step()) continue;
  }

  // Goes to the first row, then to the next. Behind the last it gives false, and may begin anew.
  bool step();

  std::string text(int column) const;
  int number(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };

  void bind(int position, std::string_view text);  // of what lives until the end of the run
  void bind(int position, int number);

  std::string file_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// Rolled back unless it has been committed.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database.execute("BEGIN EXCLUSIVE"); }
  ~Transaction() {
    if (!committed_) database_.rollBack();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    database_.execute("COMMIT");
    committed_ = true;
  }

 private:
  Database& database_;
  bool committed_ = false;
};

#endif
