#include "operations/capacity.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/frm_system_inf.h"

namespace quillmarden {

namespace {

constexpr double kBlockOverhead = 130;
constexpr long kDefaultBlockSize = 8192;
constexpr double kDefaultPctFree = 40;
constexpr double kSmallestInitial = 4096000;
constexpr double kLargestLong = 2147483647;

/// Tells a failed step of the calculation; always true.
bool tellFailure(Session& session, Host& host, std::string_view what, const EngineError& error) {
  session.log.putError(host, what, error.number(), error.what());
  gMsgBox(host, joinLines({what, error.what()}), kOkOnly, "確認");
  return true;
}

/// What the lengths of one table's fields come to.
struct FieldSum {
  double length = 0;
  std::int64_t count = 0;
};

/// The tables of a System that a calculation over all of them changes.
std::string changedTables(std::string_view alias) {
  return " And " + std::string(alias) + ".削除フラグ = 0 " + unlockedTables(alias);
}

std::unordered_map<std::int64_t, FieldSum> fieldSums(Database& database, std::string_view system) {
  std::string sql = "SELECT inf.ID, Sum(det.長さ) AS 長さ合計, Count(det.長さ) AS 長さ件数 ";
  sql.append(" FROM MAS_TABLEINFO AS inf ")
      .append("   INNER JOIN MAS_TABLEDETAILES AS det ")
      .append("        ON inf.ID = det.ID ")
      .append(" Where inf.削除フラグ = 0 ")
      .append(" And inf.システム名 = ")
      .append(sqlText(system))
      .append(" ")
      .append(" GROUP BY inf.ID");
  std::unordered_map<std::int64_t, FieldSum> sums;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext())
    sums[rows.integer(0)] = {rows.number(1), rows.integer(2)};
  return sums;
}

void storeCapacities(Database& database, std::string_view system, long blockSize) {
  std::string sql = "Select ID, 想定数, 想定保持, ORA_PCTFREE, レコード長, ブロック格納件数, 必要容量, 項目数 ";
  sql.append(" From MAS_TABLEINFO As inf ")
      .append(" Where システム名 = ")
      .append(sqlText(system))
      .append(" ")
      .append(changedTables("inf"));
  const auto sums = fieldSums(database, system);
  for (Recordset tables = database.openRecordset(sql); !tables.eof(); tables.moveNext()) {
    double rows = tables.number(1);
    if (rows != 0 && tables.number(2) != 0) rows *= tables.number(2);
    const auto sum = sums.find(tables.integer(0));
    if (rows == 0 || sum == sums.end() || sum->second.length == 0) continue;

    const Capacity capacity = capacityOf(rows, sum->second.length, blockSize, tables.number(3));
    if (tables.number(4) == capacity.recordLength && tables.number(5) == capacity.recordsPerBlock &&
        tables.number(6) == capacity.kilobytes && tables.integer(7) == sum->second.count)
      continue;
    tables.edit();
    tables.set("レコード長", capacity.recordLength);
    tables.set("ブロック格納件数", capacity.recordsPerBlock);
    tables.set("必要容量", capacity.kilobytes);
    tables.set("項目数", sum->second.count);
    tables.update();
  }
}

void storeOracleInitials(Database& database, std::string_view system) {
  std::string sql = " SELECT inf.ID, First(inf.現在数) AS 現在数値";
  sql.append(" , First(inf.想定数) AS 想定数値")
      .append(", First(inf.現在保持) AS 現在保持値")
      .append(", First(inf.想定保持) AS 想定保持値 ")
      .append(", Sum(det.長さ) AS 長さ合計")
      .append(", First(inf.ORA_INITIAL) AS 初期値")
      .append(" FROM MAS_TABLEINFO AS inf ")
      .append("   INNER JOIN MAS_TABLEDETAILES AS det ")
      .append("        ON inf.ID = det.ID ")
      .append(" Where inf.ファイル種別 = 'oracle' ")
      .append(changedTables("inf"))
      .append(" GROUP BY inf.ID, inf.システム名")
      .append(" HAVING (((inf.システム名)=")
      .append(sqlText(system))
      .append("));");
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) {
    const double size = rows.number("想定数値") * rows.number("想定保持値") * rows.number("長さ合計");
    const double initial = std::min(std::max(size, kSmallestInitial) / 1000, kLargestLong);
    const std::int64_t stored = toInteger(Value(initial));
    if (!rows.isNull("初期値") && rows.integer("初期値") == stored) continue;
    database.execute("UPDATE MAS_TABLEINFO  SET ORA_INITIAL = " + std::to_string(stored) +
                     " WHERE ID = " + std::to_string(rows.integer(0)));
  }
}

}  // namespace

bool gSetOracleFieldLength(Session& session, Host& host, std::string_view system, std::string_view id) {
  struct Rule {
    std::string_view set;
    std::string_view where;
  };
  static constexpr Rule kRules[] = {
      {" SET b.長さ = (([整数桁数]+[少数桁数]) / 2) + 1 ", " And b.型 = 'number' "},
      {" SET b.長さ = 7 ", " And b.型 = 'date' "},
      {" SET b.長さ = [整数桁数] ", " And b.型 = 'varchar2'  And b.長さ = 0 "},
      {" SET b.長さ = [整数桁数] ", " And b.型 = 'char'  And b.長さ = 0 "},
  };
  try {
    for (const Rule& rule : kRules) {
      std::string sql = "UPDATE MAS_TABLEINFO AS a ";
      sql.append(" INNER JOIN MAS_TABLEDETAILES AS b ")
          .append(" ON a.ID = b.ID ")
          .append(rule.set)
          .append(" Where a.ファイル種別 ='oracle' ")
          .append(" And a.システム名 = ")
          .append(sqlText(system))
          .append(" ");
      sql.append(id.empty() ? changedTables("a") : " And a.ID = " + std::string(id));
      session.gDB->execute(sql.append(rule.where));
    }
    return false;
  } catch (const EngineError& error) {
    return tellFailure(session, host, "レコード長の計算に失敗しました.", error);
  }
}

bool gSetFieldLength(Session& session, Host& host, std::string_view system, std::string_view id) {
  struct Rule {
    std::string_view set;
    std::string_view takesDigits;
  };
  static constexpr Rule kRules[] = {
      {"   SET det.長さ = IIf(IsNull([typ].[桁数])=True,0,[typ].[桁数]) ", "False"},
      {" SET det.長さ = IIf(IsNull([det].[整数桁数])=True,0,[det].[整数桁数]) ", "True"},
  };
  try {
    for (const Rule& rule : kRules) {
      std::string sql = "UPDATE (MAS_TABLEINFO AS inf ";
      sql.append("   INNER JOIN MAS_TABLEDETAILES AS det ")
          .append("   ON inf.ID = det.ID) ")
          .append("   INNER JOIN MAS_FILETYPE AS typ ")
          .append("   ON (det.型 = typ.型) AND (inf.ファイル種別 = typ.ファイル種別) ")
          .append(rule.set)
          .append(" WHERE ((inf.システム名)=")
          .append(sqlText(system))
          .append(") AND ((typ.桁数チェック)=")
          .append(rule.takesDigits)
          .append(")");
      sql.append(id.empty() ? changedTables("inf") : " AND ((inf.id)= " + std::string(id) + " )");
      session.gDB->execute(sql);
    }
    return false;
  } catch (const EngineError& error) {
    return tellFailure(session, host, "レコード長の計算に失敗しました.", error);
  }
}

Capacity capacityOf(double rows, double lengthSum, long blockSize, double pctfree) {
  // A "block size" that has no room for a record is none: other kinds keep a port number in that column.
  const double block =
      static_cast<double>(static_cast<double>(blockSize) <= kBlockOverhead ? kDefaultBlockSize : blockSize);
  if (pctfree <= 0 || pctfree >= 100) pctfree = kDefaultPctFree;
  const double usable = (block - kBlockOverhead) * (100 - pctfree) / 100;
  Capacity capacity{};
  capacity.recordLength = lengthSum + 2 + 10;
  capacity.recordsPerBlock = usable / capacity.recordLength;
  const double blocks = rows / capacity.recordsPerBlock;
  capacity.kilobytes = block / 1024 * blocks;
  return capacity;
}

bool gCalcCapacity(Session& session, Host& host, std::string_view system) {
  SystemRecord record;
  gMDB_GetSystemInfo(session, host, system, record);
  if (gSetFieldLength(session, host, system)) return true;
  try {
    inTransaction(*session.gDB, [&] { storeCapacities(*session.gDB, system, record.blockSize); });
    return false;
  } catch (const EngineError& error) {
    return tellFailure(session, host, "容量計算中にエラーが発生しました.", error);
  }
}

bool gCalcOracleInitial(Session& session, Host& host, std::string_view system) {
  try {
    inTransaction(*session.gDB, [&] { storeOracleInitials(*session.gDB, system); });
    return false;
  } catch (const EngineError& error) {
    return tellFailure(session, host, "更新に失敗しました.", error);
  }
}

bool recalculateSystem(Session& session, Host& host, std::string_view system) {
  return gSetOracleFieldLength(session, host, system) || gSetFieldLength(session, host, system) ||
         gCalcCapacity(session, host, system) || gCalcOracleInitial(session, host, system);
}

void CmdCalc_Click(Session& session, Host& host, frmSystemInf& screen) {
  if (refused(host, mayChangeSystem(session, screen.record.name))) return;
  if (gMsgBox(host, "各テーブルのレコード長を再計算します.", kYesNo | kQuestionIcon, "処理確認") != kYes) return;
  if (!recalculateSystem(session, host, screen.record.name)) gMsgBox(host, "終了しました.");
}

bool recalculateTable(Session& session, Host& host, std::string_view system, std::string_view id,
                      std::string_view kind) {
  if (toLower(kind) == "oracle" &&
      (gSetOracleFieldLength(session, host, system, id) || gCalcOracleInitial(session, host, system)))
    return true;
  return gSetFieldLength(session, host, system, id);
}

}  // namespace quillmarden
