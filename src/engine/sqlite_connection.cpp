#include "engine/sqlite_connection.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

#include "engine/sqlite_writer.h"

namespace quillmarden {

namespace {

constexpr std::chrono::seconds kBusyTimeOut{30};

// Short sleeps of uneven length keep many waiting processes from meeting again and again.
int waitForLock(void* connection, int attempt) {
  if (!static_cast<const Connection*>(connection)->waits) return 0;
  thread_local std::chrono::steady_clock::time_point begin;
  thread_local std::minstd_rand random{std::random_device{}()};
  const auto now = std::chrono::steady_clock::now();
  if (attempt == 0) begin = now;
  if (now - begin >= kBusyTimeOut) return 0;
  std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution<int>(1, 20)(random)));
  return 1;
}

bool writable(const std::string& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

std::string fileText(const std::string& path) { return "ファイル「" + path + "」"; }

[[noreturn]] void throwCannotOpen(const std::string& path, const std::string& reason) {
  throw EngineError(engine_error::kCannotOpen, fileText(path) + reason);
}

// What stands in the way before a byte is read. No descriptor is opened here: closing one would drop the locks that
// this process holds on the same file through another connection. Whether the file can be written.
bool checkPath(const std::string& path) {
  if (path.empty()) throwCannotOpen(path, "の名前が空です.");
  if (path.find('\0') != std::string::npos) throwCannotOpen(path, "の名前に使えない文字があります.");
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == EACCES) throwCannotOpen(path, "を開く権限がありません.");
    if (errno == ENOENT || errno == ENOTDIR) throwCannotOpen(path, "が見つかりません.");
    throwCannotOpen(path, std::string("を開けません: ") + std::strerror(errno));
  }
  if (S_ISDIR(status.st_mode)) throwCannotOpen(path, "はフォルダです.");
  if (!S_ISREG(status.st_mode)) throwCannotOpen(path, "は通常のファイルではありません.");
  if (::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) throwCannotOpen(path, "を読む権限がありません.");
  // The journal of every write stands beside the file.
  std::error_code ignored;
  const std::string folder = std::filesystem::canonical(path, ignored).parent_path().string();
  return writable(path) && (folder.empty() || writable(folder));
}

// SQLite counts its memory under a lock with every allocation, and nobody asks for the counts. Only the process's first
// connection can turn them off.
void countNoMemory() { [[maybe_unused]] static const int done = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); }

// SQLite would read a name that begins so as an address with options.
std::string plainPath(const std::string& path) { return path.rfind("file:", 0) == 0 ? "./" + path : path; }

// The address of a file that nothing changes while it is open.
std::string immutableAddress(const std::string& path) {
  std::string address = "file:";
  for (const char letter : std::filesystem::absolute(path).string()) {
    const bool escaped = letter == '%' || letter == '?' || letter == '#';
    address += escaped ? (letter == '%' ? "%25" : letter == '?' ? "%3f" : "%23") : std::string(1, letter);
  }
  return address + "?immutable=1";
}

}  // namespace

std::string quotedName(std::string_view name) {
  std::string result = "\"";
  for (const char letter : name) {
    if (letter == '"') result += '"';
    result += letter;
  }
  return result += '"';
}

PreparedStatement::PreparedStatement(Connection& connection, std::string_view sql) : connection_(&connection) {
  if (sql.find('\0') != std::string_view::npos) {
    throw EngineError(engine_error::kSyntax, "文の中に使えない文字 (NUL) があります.");
  }
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  const int code = sqlite3_prepare_v3(connection.handle(), sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, &tail);
  statement_.reset(statement);
  if (code != SQLITE_OK) connection.fail();
  if (statement == nullptr ||
      sql.find_first_not_of(" \t\r\n;", static_cast<std::size_t>(tail - sql.data())) != std::string_view::npos) {
    throw EngineError(engine_error::kSyntax, "文は一度に 1 つだけ実行できます.");
  }
}

void PreparedStatement::bind(int index, const Value& value) {
  sqlite3_stmt* statement = statement_.get();
  if (index > sqlite3_bind_parameter_count(statement)) return;
  int code = SQLITE_OK;
  if (const auto* text = std::get_if<std::string>(&value)) {
    code = sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
  } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    code = sqlite3_bind_int64(statement, index, *whole);
  } else if (const auto* real = std::get_if<double>(&value)) {
    code = sqlite3_bind_double(statement, index, *real);
  } else {
    code = sqlite3_bind_null(statement, index);
  }
  if (code != SQLITE_OK) connection_->fail();
}

void PreparedStatement::bindCopy(int index, const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr || index > sqlite3_bind_parameter_count(statement_.get())) {
    bind(index, value);
    return;
  }
  if (sqlite3_bind_text64(statement_.get(), index, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
      SQLITE_OK) {
    connection_->fail();
  }
}

bool PreparedStatement::step() {
  if (sqlite3_stmt_busy(statement_.get()) == 0) ++connection_->executions;
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  const EngineError fault = lastFault(connection_->handle(), connection_->path());
  reset();
  throw fault;
}

int PreparedStatement::run() {
  const ResetAtEnd guard(*this);
  while (step()) {
  }
  return sqlite3_changes(connection_->handle());
}

std::string_view PreparedStatement::text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  if (text == nullptr) return {};
  return {reinterpret_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

Connection::Connection(std::string path) : path_(std::move(path)) {
  readOnly_ = !checkPath(path_);
  countNoMemory();
  try {
    open();
  } catch (...) {
    close();
    throw;
  }
}

Connection::~Connection() { close(); }

// Statements of a cache may be closed after their connection; SQLite then frees it behind the last of them.
void Connection::close() {
  sqlite3_close_v2(connection_);
  connection_ = nullptr;
}

void Connection::openFile(const std::string& name, int flags) {
  close();
  flags |= SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  if (sqlite3_open_v2(name.c_str(), &connection_, flags, nullptr) != SQLITE_OK) fail();
}

void Connection::open() {
  openFile(plainPath(path_), readOnly_ ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
  checkHeader();
  sqlite3_busy_handler(connection_, waitForLock, this);
  // A file comes from anywhere: its schema may call no function with side effects, and a misspelt name in double
  // quotes is a fault, not a text.
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  // Tables that are rebuilt are renamed without a look at what else names them.
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_LEGACY_ALTER_TABLE, 1, nullptr);
  if (sqlite3_db_readonly(connection_, "main") == 1) readOnly_ = true;
  run("PRAGMA temp_store = MEMORY");
  run("PRAGMA cache_size = -16000");
  run("PRAGMA synchronous = FULL");
  // Reads the schema, so that a damaged file is known now and not in the middle of the work.
  run("SELECT count(*) FROM sqlite_schema");
  registerFunctions(connection_);
  executions = 0;
}

void Connection::checkHeader() {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(connection_, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (file == nullptr || file->pMethods == nullptr) throwCannotOpen(path_, "を開けません.");
  sqlite3_int64 size = 0;
  if (file->pMethods->xFileSize(file, &size) != SQLITE_OK) throwCannotOpen(path_, "の大きさを読めません.");
  std::array<char, 32> header{};
  const int code = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
  if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) throwCannotOpen(path_, "を読めません.");
  // A size of 0 is also told of a single byte, which is somebody's.
  if (size == 0 && header[0] == 0) return;
  const std::string_view bytes(header.data(), header.size());
  constexpr std::string_view kSqlite("SQLite format 3\0", 16);
  constexpr std::string_view kAccess("\0\1\0\0Standard ", 13);
  if (bytes.substr(0, kAccess.size()) == kAccess &&
      (bytes.substr(kAccess.size(), 6) == "Jet DB" || bytes.substr(kAccess.size(), 6) == "ACE DB")) {
    throw EngineError(engine_error::kAccessFile,
                      fileText(path_) +
                          "は Access のデータベースそのものです. このままでは使えません. "
                          "先にこのシステムの形式へ取り込んで下さい. ファイルは変更していません.");
  }
  if (bytes.substr(0, kSqlite.size()) != kSqlite) {
    throw EngineError(engine_error::kUnrecognisedFormat,
                      fileText(path_) + "はデータベースの形式ではありません. ファイルは変更していません.");
  }
  // Another tool may have left the file with a write-ahead log, which does not work in a shared network folder.
  constexpr std::size_t kWriteVersion = 18;
  if (header[kWriteVersion] == 2 && readOnly_) {
    // Without a log nobody else is at work, and without the right to write none can be begun.
    std::error_code ignored;
    const auto log = std::filesystem::file_size(path_ + "-wal", ignored);
    if (ignored || log == 0) openFile(immutableAddress(path_), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
  } else if (header[kWriteVersion] == 2) {
    sqlite3_busy_timeout(connection_, 1000);
    try {
      run("PRAGMA journal_mode = DELETE");
    } catch (const EngineError& fault) {
      // While that tool is at work the log has to stay.
      if (fault.number() != engine_error::kLocked) throw;
    }
  }
}

void Connection::run(std::string_view sql) { PreparedStatement(*this, sql).run(); }

}  // namespace quillmarden
