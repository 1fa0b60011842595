#include <algorithm>
#include <set>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "dictionary/frm_division.h"
#include "engine/sql_text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = division_col;

constexpr std::string_view kSecondForm = "yyyy/mm/dd hh:nn:ss";

bool isYesNo(const frmDivision& screen) { return screen.lblKata.caption == "Yes/No"; }

bool refusesYesNo(Host& host, const frmDivision& screen, std::string_view text) {
  if (!isYesNo(screen)) return false;
  gMsgBox(host, text, kOkOnly | kInformationIcon, "ざんねん!!");
  return true;
}

void markRow(frmDivision& screen, int row) {
  screen.Spread.setText(col::kChanged, row, "変更");
  screen.changed = screen.picRen.visible = true;
}

/// Whether the text is a whole number in the range of numeric lists.
bool isListNumber(std::string_view text) {
  if (!isNumeric(text)) return false;
  const double number = gVal(text);
  return number >= -999 && number <= 999 && number == static_cast<double>(static_cast<long>(number));
}

std::string faultOf(const frmDivision& screen) {
  std::vector<std::string_view> values;
  for (int row = 1; row <= screen.Spread.maxRows(); ++row)
    if (const std::string_view value = screen.Spread.text(col::kValue, row); !trim(value).empty())
      values.push_back(value);
  if (values.size() < 2) return joinLines({"少なくとも2件以上の", "有効なデータがありませんでした."});
  std::set<std::string_view> seen;
  for (const std::string_view value : values)
    if (!seen.insert(value).second) return "値" + std::string(value) + "  が重複しています.";
  const bool numeric = screen.lblKata.caption == "数値";
  if (numeric && !std::all_of(values.begin(), values.end(), isListNumber)) return std::string(kDivisionRange);
  return "";
}

void writeEntries(Session& session, Host& host, const frmDivision& screen) {
  const std::string& system = session.gCurrentSystemName;
  const std::string& name = screen.lblAtai.caption;
  const std::string now = formatDateTime(host.clock.now(), kSecondForm);
  const Spread& grid = screen.Spread;
  session.gDB->execute(
      "DELETE MAS_DIVISIONDETAILES.*  From MAS_DIVISIONDETAILES WHERE "
      "MAS_DIVISIONDETAILES.システム名=" +
      sqlText(system) + "    AND MAS_DIVISIONDETAILES.値名称 =" + sqlText(name) + ";");
  std::vector<std::vector<Value>> rows;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const std::string value(grid.text(col::kValue, row));
    if (trim(value).empty()) continue;
    const auto created = parseDateTime(grid.text(col::kCreated, row));
    rows.push_back({system, name, static_cast<std::int64_t>(rows.size()) + 1, value,
                    std::string(grid.text(col::kOutline, row)),
                    std::int64_t{gVal(grid.text(col::kPreset, row)) != 0 ? -1 : 0},
                    created ? formatDateTime(*created, kSecondForm) : now,
                    grid.holds(col::kAuthor, row) ? std::string(grid.text(col::kAuthor, row)) : session.gLoginUser, now,
                    session.gLoginUser});
  }
  session.gDB->insertRows(
      "MAS_DIVISIONDETAILES",
      {"システム名", "値名称", "行番号", "値", "内容", "初期値", "作成年月日", "作成者", "更新年月日", "更新者"}, rows);
}

}  // namespace

void Spread_Change(frmDivision& screen, int column, int row) {
  markRow(screen, row);
  if (column != col::kPreset || gVal(screen.Spread.text(col::kPreset, row)) == 0) return;
  for (int other = 1; other <= screen.Spread.maxRows(); ++other) {
    if (other == row || gVal(screen.Spread.text(col::kPreset, other)) == 0) continue;
    screen.Spread.setText(col::kPreset, other, "0");
    markRow(screen, other);
  }
}

void mnuSpreadClear_Click(Host& host, frmDivision& screen) {
  if (refusesYesNo(host, screen, "Yes/No型では、初期化できません.")) return;
  if (gMsgBox(host, "選択された範囲をクリアします.", kYesNo | kQuestionIcon | kDefaultSecond) != kYes) return;
  const int lastCol = std::min(screen.block.lastCol, col::kOutline);
  const int lastRow = std::min(screen.block.lastRow, screen.Spread.maxRows());
  for (int row = screen.block.firstRow; row <= lastRow; ++row) {
    for (int column = screen.block.firstCol; column <= lastCol; ++column)
      screen.Spread.setText(column, row, column == col::kPreset ? "0" : "");
    markRow(screen, row);
  }
}

void mnuSpreadAdd_Click(Host& host, frmDivision& screen) {
  if (refusesYesNo(host, screen, "Yes/No型では、追加できません.")) return;
  screen.Spread.insertRow(screen.block.firstRow);
  markRow(screen, screen.block.firstRow);
}

void mnuSpreadDel_Click(Host& host, frmDivision& screen) {
  if (refusesYesNo(host, screen, "Yes/No型では、削除できません.")) return;
  if (gMsgBox(host, "行を削除しますか?", kYesNo | kQuestionIcon | kDefaultSecond, "削除確認") != kYes) return;
  for (int row = std::min(screen.block.lastRow, screen.Spread.maxRows()); row >= screen.block.firstRow; --row) {
    screen.Spread.deleteRow(row);
    screen.changed = screen.picRen.visible = true;
  }
}

bool pChkDivision(Host& host, const frmDivision& screen) {
  const std::string fault = faultOf(screen);
  if (fault.empty()) return false;
  gMsgBox(host, fault, kOkOnly | kStopIcon, "内容確認");
  return true;
}

bool CmdUpDate_Click(Session& session, Host& host, frmDivision& screen) {
  if (!screen.lblAtai.caption.empty() && refused(host, mayChangeList(session, screen.owner))) return true;
  if (!screen.CmdUpDate.enabled || pChkDivision(host, screen)) return true;
  if (gMsgBox(host, "登録内容を更新します.", kYesNo | kQuestionIcon) != kYes) return true;
  try {
    inTransaction(*session.gDB, [&] { writeEntries(session, host, screen); });
  } catch (const EngineError& error) {
    session.log.putError(host, "frmDivision.CmdUpDate", error.number(), error.what());
    gMsgBox(host, joinLines({"更新に失敗しました.", std::to_string(error.number()), error.what()}), kOkOnly | kStopIcon,
            "こまった");
    return true;
  }
  screen.changed = screen.picRen.visible = false;
  gMsgBox(host, "登録内容を更新しました.", kOkOnly | kInformationIcon);
  // As the Repository holds it now: without gaps, with the new rows' creators.
  showValueList(session, host, screen, valueListOnShow(screen));
  return false;
}

bool CmdClose_Click(Host& host, frmDivision& screen) {
  if (screen.changed &&
      gMsgBox(host, "データが修正されていますが閉じますか?", kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return true;
  screen.unloaded = true;
  return false;
}

ValueListSheet valueListSheet(const frmDivision& screen, std::string_view system) {
  ValueListSheet sheet;
  sheet.heading = {{{"システム名:", std::string(system)},
                    {"値リスト名:", screen.lblAtai.caption},
                    {"種別:", screen.lblClass.caption},
                    {"型:", screen.lblKata.caption},
                    {"値の説明:", screen.TxtMemo.text}}};
  const Spread& grid = screen.Spread;
  for (int column = 1; column <= col::kCount; ++column)
    if (!grid.column(column).hidden) sheet.titles.push_back(grid.column(column).title);
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (trim(grid.text(col::kValue, row)).empty()) continue;
    std::vector<std::string>& cells = sheet.rows.emplace_back();
    for (int column = 1; column <= col::kCount; ++column) {
      if (grid.column(column).hidden) continue;
      const std::string_view text = grid.text(column, row);
      cells.emplace_back(column != col::kPreset ? text : gVal(text) != 0 ? "○" : "");
    }
  }
  return sheet;
}

bool pChkDivisionExcel(const Session& session, Host& host, const frmDivision& screen) {
  if (screen.lblAtai.caption.empty() || valueListSheet(screen, session.gCurrentSystemName).rows.empty()) {
    gMsgBox(host, "出力する内容がありません.");
    return true;
  }
  if (gMsgBox(host, "値リストをExcel出力しますか?", kYesNo | kQuestionIcon, "出力確認") != kYes) return true;
  if (!session.gCurrentSystemName.empty()) return false;
  gMsgBox(host, "システム名が未設定です.");
  return true;
}

}  // namespace quillmarden
