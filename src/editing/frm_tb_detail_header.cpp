#include <array>

#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

/// The columns of MAS_TABLEINFO that the header shows; an enumerator is the place of its name below.
enum HeaderColumn {
  kTableName,
  kJapaneseName,
  kSystemName,
  kShortName,
  kCategory,
  kPlacement,
  kKind,
  kDataCategory,
  kInterval,
  kFirstSql,
  kLatestSql,
  kSqlCount,
  kCheckPoint,
  kMemo,
  kInitial,
  kNext,
  kMinExtents,
  kMaxExtents,
  kPctIncrease,
  kPctFree,
  kPctUsed,
  kTableSpace,
  kDataSource,
  kScreenName,
  kReferenceFile,
  kPartition,
  kShared,
  kReverse,
  kPersonal,
  kBrin,
  kTrigger,
  kRows,
  kExpectedRows,
  kPeriods,
  kExpectedPeriods,
  kEditable,
  kDeleted,
};

constexpr std::array<std::string_view, kDeleted + 1> kHeaderColumns = {"テーブル名",
                                                                       "日本語名",
                                                                       "システム名",
                                                                       "略名",
                                                                       "分類",
                                                                       "格納先",
                                                                       "ファイル種別",
                                                                       "データ分類",
                                                                       "作成間隔",
                                                                       "SQL文初回作成日",
                                                                       "SQL文最新作成日",
                                                                       "作成回数",
                                                                       "チェックポイント日付",
                                                                       "概要",
                                                                       "ORA_INITIAL",
                                                                       "ORA_NEXT",
                                                                       "ORA_MINEXTENTS",
                                                                       "ORA_MAXEXTENTS",
                                                                       "ORA_PCTINCREASE",
                                                                       "ORA_PCTFREE",
                                                                       "ORA_PCTUSED",
                                                                       "ORA_TABLESPASE",
                                                                       "データ入力元",
                                                                       "画面名等",
                                                                       "reffile",
                                                                       "partition_field",
                                                                       "全システム共通",
                                                                       "REVERSE_DB",
                                                                       "pmark",
                                                                       "brinindex",
                                                                       "inttriggerflg",
                                                                       "現在数",
                                                                       "想定数",
                                                                       "現在保持",
                                                                       "想定保持",
                                                                       "修正許可",
                                                                       "削除フラグ"};

std::string minuteText(std::string_view stored) {
  const auto moment = parseDateTime(stored);
  return moment ? formatDateTime(*moment, kMinuteForm) : "";
}

/// The initial extent with its unit, which the storage clause reads back.
std::string extentText(double kilobytes) {
  return kilobytes > 999999 ? groupedNumber(kilobytes / 1000) + " M" : groupedNumber(kilobytes) + " K";
}

void showTexts(frmTBDetail& screen, const Recordset& row) {
  screen.txtTableNameENG.text = trim(row.text(kTableName));
  screen.txtTableNameJPN.text = trim(row.text(kJapaneseName));
  screen.lblSystemName.caption = row.text(kSystemName);
  screen.lblRyaku.caption = trim(row.text(kShortName));
  screen.lblBunrui.caption = trim(row.text(kCategory));
  screen.lblHost.caption = row.text(kPlacement);
  screen.lblFileType.caption = row.text(kKind);
  screen.lblDataBunrui.caption = row.text(kDataCategory);
  screen.lblKanKaku.caption = row.text(kInterval);
  screen.lblFirstSQL.caption = minuteText(row.text(kFirstSql));
  screen.lblNewSQL.caption = minuteText(row.text(kLatestSql));
  screen.lblNumSQL.caption = row.isNull(kSqlCount) ? "0" : std::string(row.text(kSqlCount));
  screen.lblCheckPoint.caption = minuteText(row.text(kCheckPoint));
  screen.TxtMemo.text = row.text(kMemo);
  screen.lblTbSpace.caption = row.text(kTableSpace);
  screen.lblInpData.caption = row.text(kDataSource);
  screen.lblInpForm.caption = row.text(kScreenName);
  screen.txtRefFileNameRead.text = row.text(kReferenceFile);
  screen.txtPartitionRead.text = row.text(kPartition);
}

void showFigures(frmTBDetail& screen, const Recordset& row) {
  screen.lblNum[0].caption = row.isNull(kInitial) ? "" : extentText(row.number(kInitial));
  for (std::size_t i = 1; i < screen.lblNum.size(); ++i)
    screen.lblNum[i].caption = row.text(kInitial + static_cast<int>(i));
  for (std::size_t i = 0; i < screen.lblKensu.size(); ++i)
    screen.lblKensu[i].caption = row.text(kRows + static_cast<int>(i));
}

void showMarks(frmTBDetail& screen, const Recordset& row) {
  screen.lblAllSystem.visible = row.integer(kShared) != 0;
  screen.PicReverse.visible = row.integer(kReverse) != 0;
  screen.PicPmark.visible = row.integer(kPersonal) != 0;
  screen.lblBRIN.visible = row.integer(kBrin) != 0;
  screen.picTrigger.visible = row.integer(kTrigger) != 0;
  screen.pmarkAtLoad = row.integer(kPersonal) == -1;
  screen.cmdRefFile.enabled = !screen.txtRefFileNameRead.text.empty();
  screen.cmdPartition.enabled = !screen.txtPartitionRead.text.empty();
  screen.mnuPartition.visible = screen.lblFileType.caption == "PostgreSQL";
}

}  // namespace

bool pGet_TableID2TableInfo(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId) {
  if (!isNumeric(tableId)) return true;
  if (screen.statements.header.empty()) {
    screen.statements.header = selectColumns(*session.gDB, "MAS_TABLEINFO", "a", kHeaderColumns);
    screen.tableHasPmark = hasColumn(*session.gDB, "MAS_TABLEINFO", "pmark");
  }
  std::string sql = screen.statements.header;
  sql.append(" From MAS_TABLEINFO as a WHERE a.ID=").append(tableId).append(";");
  const Recordset row = session.gDB->openRecordset(sql);
  if (row.eof()) {
    session.gKeepLog = true;
    session.log.gPutLog(host, "pGet_TableID2TableInfo Not Record:" + std::string(tableId));
    return true;
  }
  showTexts(screen, row);
  showFigures(screen, row);
  showMarks(screen, row);
  screen.whyReadOnly = mayChangeTable(session,
                                      {.name = row.text(kTableName),
                                       .system = row.text(kSystemName),
                                       .kind = row.text(kKind),
                                       .editable = row.isNull(kEditable) || row.integer(kEditable) != 0,
                                       .deleted = row.integer(kDeleted) != 0},
                                      TableChange::kFields)
                           .reason;
  screen.readOnly = !screen.whyReadOnly.empty();
  screen.picEdit.visible = screen.readOnly;
  return false;
}

}  // namespace quillmarden
