// SPDX-License-Identifier: MIT
// SQLite with owned handles and with exceptions. All failures throw util::Error, in one line that begins with
// the name of the file.
#ifndef CPP2C_HOST_STATE_DATABASE_H
#define CPP2C_HOST_STATE_DATABASE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "util/error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace host {

// A file, whatever its name.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool operator==(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
};

class Database {
 public:
  explicit Database(const std::string& file);  // an absolute path; must exist
  Database(Database&&) = default;
  ~Database();

  // Each runs one statement; number() and text() return the first column of its first row.
  void execute(const char* sql);
  int number(const char* sql);
  std::string text(const char* sql);

  bool isReadOnly() const;
  std::string logFile() const;  // the name of the write-ahead log, whether it exists or not
  std::int64_t fileSize() const;

  // Extends the file to the size of the database in the open transaction, so that the log can be copied into
  // it even if the disk is full by then.
  void reserveRoom();

  void rollBack(std::int64_t file_size) noexcept;  // no matter whether SQLite has already rolled back

  void openLog();    // a write-ahead log from now on
  void reopenLog();  // a new one, after its content has been copied into the database

  // Whether the names still lead to the files that were opened.
  bool hasItsName() const;
  bool logHasItsName() const;

  // For a file without its name: removes the log, which would be taken for that of the file with the name
  // now.
  void removeLog() noexcept;

  // Copies the write-ahead log into the database and frees the room that it takes on the disk.
  void emptyLog() noexcept;

 private:
  friend class Statement;

  struct Close {
    void operator()(sqlite3* connection) const;
  };

  std::string file_;
  FileIdentity identity_;
  FileIdentity log_identity_;
  int page_size_ = 0;
  std::unique_ptr<sqlite3, Close> connection_;
};

// A prepared statement. Its database must outlive it.
class Statement {
 public:
  Statement(const Database& database, const char* sql);

  // Runs the statement with the arguments bound to its question marks.
  template <typename... Arguments>
  void run(const Arguments&... arguments) {
    int position = 0;
    (bind(++position, arguments), ...);
    while (step()) continue;
  }

  // Moves to the first or next row. Returns false after the last one; the next call starts again.
  bool step();

  std::string text(int column) const;
  int number(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };

  void bind(int position, std::string_view text);  // the text must live until the end of run()
  void bind(int position, int number);

  std::string file_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// A transaction that is rolled back unless it is committed.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database), file_size_(database.fileSize()) {
    database.execute("BEGIN EXCLUSIVE");
  }
  ~Transaction() {
    if (!committed_) database_.rollBack(file_size_);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    database_.execute("COMMIT");
    committed_ = true;
  }

 private:
  Database& database_;
  const std::int64_t file_size_;
  bool committed_ = false;
};

}  // namespace host

#endif
