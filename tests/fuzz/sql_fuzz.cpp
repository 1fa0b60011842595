// Any text as an SQL statement: parsed, and run as a query and as an action on a small file. Nothing but an EngineError
// may come of it, and the rows that it is not about stay.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "engine/database.h"
#include "engine/parser.h"
#include "engine/sqlite_writer.h"

using namespace quillmarden;

namespace {

constexpr const char* kDefinitions[] = {
    "CREATE TABLE a (ID COUNTER, 名前 TEXT(20), 削除 SHORT, 共通 YESNO, CONSTRAINT PrimaryKey PRIMARY KEY (ID))",
    "CREATE TABLE d (ID LONG, NO LONG, 型 TEXT(9), [KEY] YESNO, m MEMO, CONSTRAINT PrimaryKey PRIMARY KEY (ID, NO))",
    "CREATE TABLE t (id LONG, s TEXT(20), d DOUBLE, w DATETIME)",
    "INSERT INTO a (名前, 削除, 共通) VALUES ('顧客', 0, True)",
    "INSERT INTO d (ID, NO, 型, [KEY]) VALUES (1, 1, 'char', True)",
    "INSERT INTO t (id, s, d) VALUES (1, 'a', 0.5)"};

struct Fixture {
  std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("sql_fuzz_" + std::to_string(getpid()) + ".mdb");
  Database database = Database::create(path.string());

  Fixture() {
    for (const char* sql : kDefinitions) database.execute(sql);
    database.putQueryDef({"q", "PARAMETERS p Text; SELECT t.id, t.s FROM t WHERE s = p"});
  }
  ~Fixture() { std::filesystem::remove(path); }
};

template <typename Call>
void tolerate(Call&& call) {
  try {
    call();
  } catch (const EngineError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Fixture fixture;
  Database& database = fixture.database;
  const std::vector<ParameterValue> parameters = {{"p", std::string("a")}};
  const std::string_view sql(reinterpret_cast<const char*>(data), size);

  tolerate([&] { parseStatement(sql); });
  tolerate([&] { statementKey(sql); });
  tolerate([&] {
    Recordset rows = database.openRecordset(sql, parameters);
    for (int row = 0; row < 3 && !rows.eof(); ++row) {
      for (int column = 0; column < rows.fieldCount(); ++column) rows.text(column);
      rows.moveNext();
    }
  });
  database.beginTrans();
  tolerate([&] { database.execute(sql, parameters); });
  database.rollback();
  if (database.tableDefs().size() != 3) std::abort();
  return 0;
}
