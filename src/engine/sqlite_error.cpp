#include "engine/sqlite_error.h"

#include <charconv>
#include <optional>
#include <string_view>

namespace quillmarden {

namespace {

// SQLite hands a text alone through; number and text travel in one, behind a character that no message begins with.
constexpr char kMark = '\x1f';

std::optional<EngineError> unpacked(std::string_view message) {
  if (message.empty() || message.front() != kMark) return std::nullopt;
  message.remove_prefix(1);
  int number = 0;
  const auto [end, fault] = std::from_chars(message.data(), message.data() + message.size(), number);
  if (fault != std::errc() || end == message.data() + message.size() || *end != kMark) return std::nullopt;
  return EngineError(number, std::string(end + 1, message.data() + message.size()));
}

bool startsWith(std::string_view text, std::string_view start, std::string_view& rest) {
  if (text.substr(0, start.size()) != start) return false;
  rest = text.substr(start.size());
  return true;
}

// "T.a, T.b" as "テーブル「T」の項目「a, b」".
std::string place(std::string_view columns) {
  const std::size_t dot = columns.find('.');
  if (dot == std::string_view::npos) return "「" + std::string(columns) + "」";
  const std::string table(columns.substr(0, dot));
  std::string names;
  while (!columns.empty()) {
    const std::size_t end = columns.find(", ");
    std::string_view name = columns.substr(0, end);
    if (name.substr(0, table.size() + 1) == table + ".") name.remove_prefix(table.size() + 1);
    names.append(names.empty() ? "" : ", ").append(name);
    if (end == std::string_view::npos) break;
    columns.remove_prefix(end + 2);
  }
  return "テーブル「" + table + "」の項目「" + names + "」";
}

EngineError constraintFault(int code, std::string_view message) {
  std::string_view rest;
  if (code == SQLITE_CONSTRAINT_NOTNULL && startsWith(message, "NOT NULL constraint failed: ", rest)) {
    return EngineError(engine_error::kNullNotAllowed, place(rest) + "は空 (Null) にできません.");
  }
  if (startsWith(message, "UNIQUE constraint failed: ", rest)) {
    return EngineError(engine_error::kDuplicateKey, place(rest) + "に同じ値の行がすでにあります.");
  }
  if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY || code == SQLITE_CONSTRAINT_ROWID) {
    return EngineError(engine_error::kDuplicateKey, "同じキーの行がすでにあります: " + std::string(message));
  }
  return EngineError(engine_error::kConversion, "値が表の制約に合いません: " + std::string(message));
}

EngineError statementFault(std::string_view message) {
  std::string_view rest;
  if (startsWith(message, "no such table: ", rest)) {
    return EngineError(engine_error::kNoSuchTable, "テーブル「" + std::string(rest) + "」が見つかりません.");
  }
  if (startsWith(message, "no such column: ", rest)) {
    return EngineError(engine_error::kMissingParameter, "項目「" + std::string(rest) + "」が見つかりません.");
  }
  if (startsWith(message, "duplicate column name: ", rest)) {
    return EngineError(engine_error::kFieldExists, "項目「" + std::string(rest) + "」はすでにあります.");
  }
  if (startsWith(message, "table ", rest) && message.find(" already exists") != std::string_view::npos) {
    return EngineError(engine_error::kTableExists, "テーブルはすでにあります: " + std::string(message));
  }
  if (message == "parser stack overflow" || startsWith(message, "Expression tree is too large", rest)) {
    return EngineError(engine_error::kSyntax, "式の入れ子が深すぎます.");
  }
  if (startsWith(message, "HAVING clause on a non-aggregate", rest)) {
    return EngineError(engine_error::kSyntax, "HAVING には GROUP BY または集計関数が必要です.");
  }
  if (startsWith(message, "sub-select returns ", rest)) {
    return EngineError(engine_error::kSyntax, "値として使う SELECT は 1 項目だけを返す必要があります.");
  }
  if (startsWith(message, "misuse of aggregate", rest)) {
    return EngineError(engine_error::kSyntax, "集計関数はここでは使えません" + std::string(rest) + ".");
  }
  return EngineError(engine_error::kSyntax, "文を実行できません: " + std::string(message));
}

}  // namespace

void resultError(sqlite3_context* context, const EngineError& fault) {
  const std::string text = kMark + std::to_string(fault.number()) + kMark + fault.what();
  sqlite3_result_error(context, text.data(), static_cast<int>(text.size()));
}

EngineError lastFault(sqlite3* connection, const std::string& path) {
  const int code = sqlite3_extended_errcode(connection);
  const std::string message = sqlite3_errmsg(connection);
  const std::string file = "ファイル「" + path + "」";
  const std::string tail = " (" + message + ")";
  switch (code) {
    case SQLITE_IOERR_WRITE:
    case SQLITE_IOERR_FSYNC:
    case SQLITE_IOERR_DIR_FSYNC:
    case SQLITE_IOERR_TRUNCATE:
      return EngineError(engine_error::kDiskFull,
                         file + "に書き込めません. ディスクの空きを確認して下さい. 変更は保存されていません." + tail);
    case SQLITE_IOERR_NOMEM:
      return EngineError(engine_error::kOutOfMemory, "メモリが足りません.");
    case SQLITE_READONLY_ROLLBACK:
    case SQLITE_READONLY_RECOVERY:
    case SQLITE_READONLY_CANTINIT:
      return EngineError(engine_error::kReadOnly, file +
                                                      "には中断された更新が残っています. "
                                                      "書き込みの権限のあるユーザーが一度開くと、元に戻ります.");
    case SQLITE_READONLY_DBMOVED:
      return EngineError(engine_error::kReadOnly, file + "は使用中に移動または削除されました.");
    default:
      break;
  }
  switch (code & 0xff) {
    case SQLITE_ERROR:
      if (std::optional<EngineError> fault = unpacked(message)) return *std::move(fault);
      return statementFault(message);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return EngineError(engine_error::kLocked,
                         file + "は他のユーザーが使用中です. しばらく待ってから、やり直して下さい.");
    case SQLITE_FULL:
      return EngineError(engine_error::kDiskFull,
                         "ディスクに空きがなく、" + file + "に書き込めません. 変更は保存されていません.");
    case SQLITE_CONSTRAINT:
      return constraintFault(code, message);
    case SQLITE_READONLY:
      return EngineError(engine_error::kReadOnly, file + "は読み取り専用です." + tail);
    case SQLITE_CANTOPEN:
      return EngineError(engine_error::kCannotOpen,
                         file + "またはそのフォルダを開けません. 権限を確認して下さい." + tail);
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return EngineError(engine_error::kCannotOpen, file + "を使う権限がありません." + tail);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return EngineError(engine_error::kDamaged, file + "は壊れています. バックアップから戻して下さい." + tail);
    case SQLITE_IOERR:
      return EngineError(engine_error::kDiskOrNetwork,
                         file + "の読み書きに失敗しました. ディスクまたはネットワークを確認して下さい." + tail);
    case SQLITE_TOOBIG:
      return EngineError(engine_error::kTextTooLong, file + ": 文字列または文が長すぎます.");
    case SQLITE_NOMEM:
      return EngineError(engine_error::kOutOfMemory, "メモリが足りません.");
    default:
      return EngineError(engine_error::kSyntax, file + ": 文を実行できません." + tail);
  }
}

}  // namespace quillmarden
