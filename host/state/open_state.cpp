// SPDX-License-Identifier: MIT
#include "host/state/open_state.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "include_c"
#include "util/text.h"

namespace {

constexpr int kApplicationId = 0x63707032;
constexpr int kVersion = 1;

constexpr const char* kMake[] = {
    "CREATE TABLE product (name TEXT NOT NULL) STRICT",
    "CREATE TABLE attribute (object TEXT PRIMARY KEY, value INTEGER NOT NULL) STRICT, WITHOUT ROWID",
    "CREATE TABLE instance (name TEXT PRIMARY KEY, present INTEGER NOT NULL) STRICT, WITHOUT ROWID",
    R"(CREATE TABLE value (instance TEXT, leaf TEXT, type TEXT NOT NULL, value TEXT NOT NULL,
                           PRIMARY KEY (instance, leaf)) STRICT, WITHOUT ROWID)",
    "PRAGMA application_id = 0x63707032",
    "PRAGMA user_version = 1",
};

[[noreturn]] void refuse(int code, const std::string& file, const std::string& what) {
  throw StartError(code, file + ": " + what);
}

// It may hold secrets, so nobody else may read it. A file that is there is not even opened: to close it again
// would drop the lock that this process may hold on it.
void makeFile(const std::string& file) {
  const int descriptor = open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor != -1) {
    close(descriptor);
  } else if (errno != EEXIST) {
    refuse(C_RESULT_SYSTEM_CALL, file, std::string("cannot be made: ") + std::strerror(errno));
  }
}

// A file without anything in it, also one whose making was interrupted.
bool isNew(Database& database) {
  return database.number("PRAGMA application_id") == 0 &&
         database.number("SELECT count(*) FROM sqlite_schema") == 0;
}

void make(Database& database, const std::string& product) {
  for (const char* sql : kMake) database.execute(sql);
  Statement(database, "INSERT INTO product VALUES (?)").run(product);
}

void checkOwner(Database& database, const std::string& file, const std::string& product) {
  if (database.number("PRAGMA application_id") != kApplicationId) {
    refuse(C_RESULT_PARAM, file, "is the database of another program");
  }
  const int version = database.number("PRAGMA user_version");
  if (version != kVersion) {
    refuse(C_RESULT_PARAM, file,
           "has version " + std::to_string(version) + ", known is " + std::to_string(kVersion));
  }
  const std::string owner = database.text("SELECT name FROM product");
  if (owner != product)
    refuse(C_RESULT_PARAM, file, "belongs to " + util::quoted(owner) + ", not to " + util::quoted(product));
}

// The lock that comes with the transaction outlasts it, in this mode. It comes first, so that of two
// processes one gets it.
void claim(Database& database, const std::string& file, const std::string& product) {
  database.execute("PRAGMA locking_mode = EXCLUSIVE");
  Transaction transaction(database);
  if (isNew(database)) {
    make(database, product);
  } else {
    checkOwner(database, file, product);
  }
  transaction.commit();
}

}  // namespace

Database openState(const std::string& file, const std::string& product) {
  makeFile(file);
  Database database(file);
  if (database.isReadOnly()) refuse(C_RESULT_SYSTEM_CALL, file, "it or its folder cannot be written");
  claim(database, file, product);
  if (database.text("PRAGMA quick_check(1)") != "ok") refuse(C_RESULT_PARAM, file, "is damaged");

  // A save is one write to one file, on the disk before it returns.
  if (database.text("PRAGMA journal_mode = WAL") != "wal") {
    refuse(C_RESULT_SYSTEM_CALL, file, "no file can be made beside it");
  }
  database.execute("PRAGMA synchronous = FULL");
  return database;
}
