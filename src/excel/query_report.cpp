#include "excel/query_report.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "excel/grid_sheet.h"

namespace quillmarden {
namespace {

constexpr std::array<std::string_view, 12> kNumberTypes = {"bigint",  "boolean",    "byte",    "currency",
                                                           "decimal", "double",     "float",   "integer",
                                                           "long",    "longbinary", "numeric", "single"};
// Repositories from before have dates declared as binary.
constexpr std::array<std::string_view, 3> kDateTypes = {"binary", "date", "time"};

bool isNumberType(std::string_view type) { return std::ranges::find(kNumberTypes, type) != kNumberTypes.end(); }
bool isDateType(std::string_view type) { return std::ranges::find(kDateTypes, type) != kDateTypes.end(); }

/// A date, a time of day, or both.
std::optional<DateTime> typedMoment(std::string_view text) {
  const std::string trimmed(trim(text));
  if (const auto moment = parseDateTime(trimmed)) return moment;
  return parseDateTime("1899/12/30 " + trimmed);
}

Value parameterValue(std::string_view type, std::string_view text) {
  if (isNumberType(type)) {
    const double number = gVal(text);
    constexpr double kWhole = 9e15;
    if (number > -kWhole && number < kWhole && number == static_cast<double>(static_cast<std::int64_t>(number))) {
      return static_cast<std::int64_t>(number);
    }
    return number;
  }
  if (isDateType(type)) {
    if (const auto moment = typedMoment(text)) return formatDateTime(*moment, "yyyy/mm/dd hh:nn:ss");
  }
  return std::string(text);
}

std::vector<ParameterValue> parameterValues(Session& session, const frmReport& screen) {
  std::vector<ParameterValue> values;
  const std::vector<QueryParameter> parameters = session.gDB->queryParameters(screen.CmbDataSource.text);
  for (std::size_t i = 0; i < parameters.size() && i < screen.TxtPara.size(); ++i) {
    values.push_back({parameters[i].name, parameterValue(parameters[i].type, screen.TxtPara[i].text)});
  }
  return values;
}

void fillGrid(Spread& grid, Recordset& rows) {
  std::vector<SpreadColumn> columns;
  for (int field = 0; field < rows.fieldCount(); ++field) {
    SpreadColumn column;
    column.title = trim(rows.fieldName(field));
    column.kind = CellKind::Static;
    columns.push_back(std::move(column));
  }
  grid.setColumns(std::move(columns));
  // Sized before the wait for its rows, so that filling never moves what is there.
  grid.setMaxRows(std::min(rows.recordCount(), Spread::kMaxRows));
  for (int row = 1; !rows.eof(); rows.moveNext(), ++row) {
    for (int field = 0; field < rows.fieldCount(); ++field) {
      if (!rows.isNull(field)) grid.setText(field + 1, row, trim(rows.text(field)));
    }
  }
}

/// Runs the query into the grid. True on failure, after its message.
bool pGetQueryData(Session& session, Host& host, frmReport& screen) {
  const WaitText wait(host, "出力中です....");
  try {
    Recordset rows = session.gDB->openRecordset(screen.CmbDataSource.text, parameterValues(session, screen));
    fillGrid(screen.Spread, rows);
    screen.lblNum.caption = std::to_string(rows.recordCount());
    return false;
  } catch (const EngineError& error) {
    session.log.putError(host, "pGetQueryData", error.number(), error.what());
    gMsgBox(host, joinLines({"(>_<)エラーがありました.", std::string(" ") + error.what()}), kOkOnly, "こまった");
    return true;
  }
}

Workbook reportBook(const Session& session, BookRun& run, const frmReport& screen) {
  const Spread& cells = screen.Spread;
  SheetGrid grid;
  for (int column = 1; column <= cells.maxCols(); ++column) grid.titles.push_back(cells.column(column).title);
  grid.rows = cells.maxRows();
  grid.text = [&cells](int column, int row) { return cells.text(column, row); };
  return gridBook(run,
                  {{"システム名:", session.gCurrentSystemName},
                   {"Query:", screen.CmbDataSource.text},
                   {"パラメータ1:", screen.TxtPara[0].text},
                   {"パラメータ2:", screen.TxtPara[1].text},
                   {"パラメータ3:", ""}},
                  grid);
}

std::string PutExcelFile(Session& session, Host& host, BookRun& run, const frmReport& screen) {
  if (trim(session.gCurrentSystemName).empty()) {
    gMsgBox(host, "システム名が未設定です.", kStopIcon);
    return "";
  }
  const WaitText wait(host, "Excel出力中です....");
  const std::string path = workFile(session, run, "temptemp.xlsx");
  if (!mayReplaceOrTell(session, host, path)) return "";
  Workbook book = reportBook(session, run, screen);
  saveBook(session, host, book, screen.CmbDataSource.text, path);
  tellCutTexts(host, run);
  return path;
}

}  // namespace

void frmReport_Load(Session& session, Host& host, frmReport& screen) {
  screen.caption = "レポート : システム名: [ " + session.gCurrentSystemName + " ] ";
  // Without a query there are no parameters to give.
  if (screen.CmbDataSource.text.empty())
    for (TextBox& parameter : screen.TxtPara) parameter.enabled = false;
  try {
    pGetQueryList(session, screen);
  } catch (const EngineError& error) {
    session.log.putError(host, "pGetQueryList", error.number(), error.what());
    gMsgBox(host, error.what());
  }
}

void pGetQueryList(Session& session, frmReport& screen) {
  screen.CmbDataSource.entries.clear();
  for (const QueryDef& query : session.gDB->queryDefs()) {
    if (query.name.starts_with(kReportPrefix)) screen.CmbDataSource.entries.push_back(query.name);
  }
}

bool CmbDataSource_Click(Session& session, Host& host, frmReport& screen) {
  for (std::size_t i = 0; i < screen.TxtPara.size(); ++i) {
    screen.TxtPara[i] = {"", false, false};
    screen.TxtParaTips[i].clear();
    screen.lblKata[i].caption.clear();
  }
  if (screen.CmbDataSource.entries.empty()) {
    gMsgBox(host, "有効なQueryが存在しませんでした.");
    return true;
  }
  try {
    const std::vector<QueryParameter> parameters = session.gDB->queryParameters(screen.CmbDataSource.text);
    if (parameters.size() > screen.TxtPara.size()) {
      gMsgBox(host, "3つ以上のパラメータには対応していません.", kStopIcon);
      return true;
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      screen.TxtPara[i].enabled = true;
      screen.TxtParaTips[i] = parameters[i].name;
      screen.lblKata[i].caption = parameters[i].type;
    }
    return false;
  } catch (const EngineError& error) {
    gMsgBox(host, joinLines({"(>_<)エラーがありました.", std::string(" ") + error.what()}), kOkOnly, "こまった");
    return true;
  }
}

bool pChkPara(Host& host, frmReport& screen) {
  screen.focusPara = -1;
  for (std::size_t i = 0; i < screen.TxtPara.size(); ++i) {
    if (!screen.TxtPara[i].enabled) continue;
    const std::string& type = screen.lblKata[i].caption;
    const std::string& text = screen.TxtPara[i].text;
    std::string_view fault;
    if (isNumberType(type) && !isNumeric(text)) fault = "数値以外が設定されています.";
    if (isDateType(type) && !typedMoment(text)) fault = "時間/日付以外が設定されています.";
    if (fault.empty()) continue;
    screen.focusPara = static_cast<int>(i);
    gMsgBox(host, fault);
    return true;
  }
  return false;
}

bool CmdFind_Click(Session& session, Host& host, frmReport& screen) {
  if (trim(screen.CmbDataSource.text).empty()) {
    gMsgBox(host, "Queryが未設定です.");
    return true;
  }
  if (gMsgBox(host, "Queryを実行します.", kYesNo | kQuestionIcon) != kYes) return true;
  return pChkPara(host, screen) || pGetQueryData(session, host, screen);
}

std::string CmdExcel_Click(Session& session, Host& host, BookRun& run, frmReport& screen, bool openAfter) {
  if (screen.Spread.maxRows() == 0) {
    gMsgBox(host, "出力する内容がありません.");
    return "";
  }
  if (gMsgBox(host, "Excel出力しますか?", kYesNo | kQuestionIcon, "出力確認") != kYes) return "";
  return runOutput(session, host, "PutExcelFile", openAfter, [&] { return PutExcelFile(session, host, run, screen); });
}

void CmdAccess_Click(Session& session, Host& host, frmReport&) {
  const std::string& path = session.gDB->path();
  gMsgBox(host, joinLines({"接続先のデータベースを開きます.", " " + path}));
  host.opener.openFile(toPath(path));
}

}  // namespace quillmarden
