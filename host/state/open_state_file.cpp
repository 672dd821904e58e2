// SPDX-License-Identifier: MIT
#include "host/state/open_state_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "util/text.h"

namespace host {
namespace {

constexpr int kApplicationId = 0x63707032;
constexpr int kVersion = 1;
constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

constexpr const char* kCreate[] = {
    "CREATE TABLE product (name TEXT NOT NULL) STRICT",
    "CREATE TABLE attribute (object TEXT PRIMARY KEY, value INTEGER NOT NULL) STRICT, WITHOUT ROWID",
    "CREATE TABLE instance (name TEXT PRIMARY KEY, present INTEGER NOT NULL) STRICT, WITHOUT ROWID",
    R"(CREATE TABLE value (instance TEXT, leaf TEXT, type TEXT NOT NULL, value TEXT NOT NULL,
                           PRIMARY KEY (instance, leaf)) STRICT, WITHOUT ROWID)",
    "PRAGMA application_id = 0x63707032",
    "PRAGMA user_version = 1",
};

[[noreturn]] void fail(int code, const std::string& file, const std::string& what) {
  throw util::Error(code, file + ": " + what);
}

// The file may contain secrets, so only its owner may read it. An existing file is not even opened here:
// closing it again would drop the locks that this process may hold on it.
void createFile(const std::string& file) {
  const int descriptor = open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kOwnerOnly);
  if (descriptor != -1) {
    close(descriptor);
  } else if (errno != EEXIST) {
    fail(C_RESULT_SYSTEM_CALL, file, std::string("cannot be created: ") + std::strerror(errno));
  }
}

// An empty file, or one whose creation was interrupted.
bool isNew(Database& database) {
  return database.number("PRAGMA application_id") == 0 &&
         database.number("SELECT count(*) FROM sqlite_schema") == 0;
}

void create(Database& database, const std::string& product) {
  for (const char* sql : kCreate) database.execute(sql);
  Statement(database, "INSERT INTO product VALUES (?)").run(product);
}

void checkOwner(Database& database, const std::string& file, const std::string& product) {
  if (database.number("PRAGMA application_id") != kApplicationId) {
    fail(C_RESULT_PARAM, file, "is not a state file, but another program's database");
  }
  const int version = database.number("PRAGMA user_version");
  if (version != kVersion) {
    fail(C_RESULT_PARAM, file,
         "has format version " + std::to_string(version) + "; supported: " + std::to_string(kVersion));
  }
  const std::string owner = database.text("SELECT name FROM product");
  if (owner != product)
    fail(C_RESULT_PARAM, file, "belongs to " + util::quoted(owner) + ", not to " + util::quoted(product));
}

// In this mode the lock of the transaction stays after it. It is taken before anything is read, so that only
// one of two processes gets it.
void claim(Database& database, const std::string& file, const std::string& product) {
  database.execute("PRAGMA locking_mode = EXCLUSIVE");
  Transaction transaction(database);
  if (isNew(database)) {
    create(database, product);
  } else {
    checkOwner(database, file, product);
  }
  transaction.commit();
}

std::string octal(mode_t mode) {
  char digits[8];
  std::snprintf(digits, sizeof digits, "%04o", mode & 07777U);
  return digits;
}

// Takes group and others their access. Does so only after the file has proved to be a state file: the name
// may be a link to any file.
void restrictAccess(const std::string& file, ILog& log) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0 || (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return;
  const std::string from_to = octal(status.st_mode) + " to " + octal(kOwnerOnly);
  if (status.st_uid != geteuid()) {
    fail(C_RESULT_SYSTEM_CALL, file,
         "other users have access, and it belongs to user " + std::to_string(status.st_uid) +
             ", who must change its mode from " + from_to);
  }
  if (chmod(file.c_str(), kOwnerOnly) != 0) {
    fail(C_RESULT_SYSTEM_CALL, file,
         "other users have access; cannot change its mode from " + from_to + ": " + std::strerror(errno));
  }
  log.record("state", C_LOG_WARNING,
             (file + ": other users had access; changed its mode from " + from_to).c_str());
}

}  // namespace

Database openStateFile(const std::string& file, const std::string& product, ILog& log) {
  createFile(file);
  Database database(file);
  if (database.isReadOnly()) fail(C_RESULT_SYSTEM_CALL, file, "the file or its folder is read-only");
  claim(database, file, product);
  restrictAccess(file, log);
  chmod(database.logFile().c_str(), kOwnerOnly);  // has the mode that the file had
  if (database.text("PRAGMA quick_check(1)") != "ok") fail(C_RESULT_PARAM, file, "is damaged");

  // With these two, a save is one write to one file, which is on the disk when it returns.
  database.openLog();
  database.execute("PRAGMA synchronous = FULL");

  // Copies the log into the database at 16 pages, and keeps it no larger, for small disks.
  database.execute("PRAGMA wal_autocheckpoint = 16");
  database.execute("PRAGMA journal_size_limit = 65536");
  return database;
}

}  // namespace host
