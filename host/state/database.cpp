// SPDX-License-Identifier: MIT
#include "host/state/database.h"

#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <new>

#include "include_c"

namespace host {
namespace {

struct Failure {
  int sqlite_code;
  int result;
  const char* text;
};

constexpr Failure kFailures[] = {
    {SQLITE_NOTADB, C_RESULT_PARAM, "is not a database"},
    {SQLITE_CORRUPT, C_RESULT_PARAM, "is damaged"},
    {SQLITE_ERROR, C_RESULT_PARAM, "is damaged"},  // a table is missing
    {SQLITE_BUSY, C_RESULT_SYSTEM_CALL, "is in use by another process"},
    {SQLITE_CANTOPEN, C_RESULT_SYSTEM_CALL, "cannot open the file or its journal"},
    {SQLITE_READONLY, C_RESULT_SYSTEM_CALL, "the file or its folder is read-only"},
    {SQLITE_IOERR, C_RESULT_SYSTEM_CALL, "cannot be read or written"},
    {SQLITE_FULL, C_RESULT_SYSTEM_CALL, "the disk is full"},
};

[[noreturn]] void fail(const std::string& file, sqlite3* connection) {
  const int code = sqlite3_errcode(connection) & 0xff;
  const auto* known = std::find_if(std::begin(kFailures), std::end(kFailures),
                                   [&](const Failure& failure) { return failure.sqlite_code == code; });
  const bool is_known = known != std::end(kFailures);
  std::string message = file + ": " + (is_known ? known->text : sqlite3_errmsg(connection));
  if (code == SQLITE_CANTOPEN) message += std::string(": ") + std::strerror(sqlite3_system_errno(connection));
  throw util::Error(is_known ? known->result : C_RESULT_SYSTEM_CALL, message);
}

FileIdentity identityOf(const std::string& name) {
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

// Whether the name still leads to the file. If that cannot be found out, for example because the folder may
// not be searched, the file is not taken for lost: its log, which is then removed, may have the saved state.
bool leadsTo(const std::string& name, const FileIdentity& identity) {
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) return errno != ENOENT && errno != ENOTDIR;
  return FileIdentity{status.st_dev, status.st_ino} == identity;
}

int control(sqlite3* connection, int operation, void* argument) {
  return sqlite3_file_control(connection, "main", operation, argument);
}

sqlite3_file* fileOf(sqlite3* connection) {
  sqlite3_file* file = nullptr;
  control(connection, SQLITE_FCNTL_FILE_POINTER, &file);
  return file;
}

const char* whyNotLarger(std::int64_t size) {
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  return static_cast<rlim_t>(size) > limit.rlim_cur ? "would exceed the limit for file sizes (RLIMIT_FSIZE)"
                                                    : "the disk is full";
}

}  // namespace

void Database::Close::operator()(sqlite3* connection) const {
  sqlite3_close(connection);
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

// SQLite gives some relative names, such as ":memory:", a meaning of their own. An absolute path has none.
// "unix-excl" takes the write lock at once. By default, SQLite takes a read lock first; of two processes that
// hold it, neither gets the write lock.
Database::Database(const std::string& file) : file_(file), identity_(identityOf(file)) {
  sqlite3* connection = nullptr;
  const int result = sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, "unix-excl");
  connection_.reset(connection);
  if (result != SQLITE_OK) fail(file_, connection);
  if (identity_ == FileIdentity())
    throw util::Error(C_RESULT_SYSTEM_CALL, file_ + ": cannot be read or written");
}

// When it is closed, SQLite would remove the log of the file that has the name now.
Database::~Database() {
  if (connection_ == nullptr || hasItsName()) return;
  removeLog();
  sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void Database::execute(const char* sql) {
  Statement(*this, sql).run();
}

int Database::number(const char* sql) {
  Statement statement(*this, sql);
  return statement.step() ? statement.number(0) : 0;
}

std::string Database::text(const char* sql) {
  Statement statement(*this, sql);
  return statement.step() ? statement.text(0) : "";
}

bool Database::isReadOnly() const {
  return sqlite3_db_readonly(connection_.get(), "main") == 1;
}

std::string Database::logFile() const {
  return sqlite3_filename_wal(sqlite3_db_filename(connection_.get(), "main"));
}

void Database::openLog() {
  if (text("PRAGMA journal_mode = WAL") != "wal") {
    throw util::Error(C_RESULT_SYSTEM_CALL, file_ + ": cannot create a journal beside it");
  }
  number("PRAGMA schema_version");  // the first read creates the file
  log_identity_ = identityOf(logFile());
  page_size_ = number("PRAGMA page_size");
  control(connection_.get(), SQLITE_FCNTL_CHUNK_SIZE, &page_size_);  // lets SQLite extend the file on request
}

void Database::reopenLog() {
  execute("PRAGMA journal_mode = DELETE");
  openLog();
}

bool Database::hasItsName() const {
  return leadsTo(file_, identity_);
}

bool Database::logHasItsName() const {
  return leadsTo(logFile(), log_identity_);
}

void Database::removeLog() noexcept {
  if (identityOf(logFile()) == log_identity_) unlink(logFile().c_str());
}

std::int64_t Database::fileSize() const {
  sqlite3_file* file = fileOf(connection_.get());
  sqlite3_int64 size = 0;
  file->pMethods->xFileSize(file, &size);
  return size;
}

void Database::reserveRoom() {
  std::int64_t size = std::int64_t{number("PRAGMA page_count")} * page_size_;
  if (control(connection_.get(), SQLITE_FCNTL_SIZE_HINT, &size) != SQLITE_OK) {
    throw util::Error(C_RESULT_SYSTEM_CALL, file_ + ": " + whyNotLarger(size));
  }
}

void Database::rollBack(std::int64_t file_size) noexcept {
  sqlite3_exec(connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_file* file = fileOf(connection_.get());
  if (fileSize() > file_size) file->pMethods->xTruncate(file, file_size);
}

void Database::emptyLog() noexcept {
  sqlite3_wal_checkpoint_v2(connection_.get(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

Statement::Statement(const Database& database, const char* sql) : file_(database.file_) {
  sqlite3_stmt* statement = nullptr;
  sqlite3* connection = database.connection_.get();
  if (sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr) != SQLITE_OK) fail(file_, connection);
  statement_.reset(statement);
}

bool Statement::step() {
  if (sqlite3_step(statement_.get()) == SQLITE_ROW) return true;
  const int result = sqlite3_reset(statement_.get());  // repeats the error of the step
  if (result != SQLITE_OK) fail(file_, sqlite3_db_handle(statement_.get()));
  return false;
}

std::string Statement::text(int column) const {
  const unsigned char* bytes = sqlite3_column_text(statement_.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  if (bytes == nullptr && sqlite3_errcode(sqlite3_db_handle(statement_.get())) == SQLITE_NOMEM) {
    throw std::bad_alloc();
  }
  return std::string(bytes, bytes + size);
}

int Statement::number(int column) const {
  return sqlite3_column_int(statement_.get(), column);
}

void Statement::bind(int position, std::string_view text) {
  if (sqlite3_bind_text64(statement_.get(), position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8) !=
      SQLITE_OK) {
    fail(file_, sqlite3_db_handle(statement_.get()));
  }
}

void Statement::bind(int position, int number) {
  if (sqlite3_bind_int(statement_.get(), position, number) != SQLITE_OK) {
    fail(file_, sqlite3_db_handle(statement_.get()));
  }
}

}  // namespace host
