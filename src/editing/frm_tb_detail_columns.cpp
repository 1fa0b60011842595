#include <algorithm>
#include <utility>

#include "common/numbers.h"
#include "common/settings.h"
#include "common/text.h"
#include "editing/detail_parts.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr double kLargestRange = 999999999999.99;
constexpr double kDateWidth = 7.5;   ///< of "yyyy/mm/dd", in letters "W"
constexpr double kMomentWidth = 11;  ///< of "yyyy/mm/dd hh:nn"
constexpr double kLargestDigits = 32767;
constexpr double kLargestLength = 2147483647;
constexpr int kStoredText = 255;  ///< what a text column of the Repository holds

using Columns = std::vector<SpreadColumn>;

/// 26 hidden static columns; each mode then shows its own.
Columns hiddenColumns() {
  SpreadColumn hidden;
  hidden.kind = CellKind::Static;
  hidden.hidden = true;
  return Columns(col::kCount, hidden);
}

SpreadColumn& show(Columns& columns, int number, std::string_view title, CellKind kind, int maxLength = 0) {
  SpreadColumn& column = columns[static_cast<std::size_t>(number - 1)];
  column.title = title;
  column.kind = kind;
  column.maxLength = maxLength;
  column.oneLine = kind == CellKind::Edit && number != col::kRemark;
  column.hidden = false;
  return column;
}

void showList(Columns& columns, int number, std::string_view title, std::vector<std::string> entries) {
  show(columns, number, title, CellKind::List).entries = std::move(entries);
}

void showNumber(Columns& columns, int number, std::string_view title, CellKind kind, double minimum, double maximum) {
  SpreadColumn& column = show(columns, number, title, kind);
  column.minimum = minimum;
  column.maximum = maximum;
}

/// A column of a program row that an older file may have nowhere to store: nothing can be typed into it then.
SpreadColumn& showOwn(Database& database, Columns& columns, int number, std::string_view title) {
  const bool stored = hasColumn(database, "MAS_PRJINFO", prjColumn(number));
  return show(columns, number, title, stored ? CellKind::Edit : CellKind::Static);
}

void showAudit(Columns& columns) {
  show(columns, col::kAuthor, "作成者", CellKind::Static);
  show(columns, col::kCreated, "作成日", CellKind::Static).width = kMomentWidth;
}

void hide(Columns& columns, int number) { columns[static_cast<std::size_t>(number - 1)].hidden = true; }

std::vector<std::string> typesOfKind(Session& session, std::string_view kind) {
  std::vector<std::string> types;
  const std::string wanted = toLower(trim(kind));
  for (const FileType& type : gGetFileTypeList(*session.gDB, session.catalogue))
    if (toLower(type.kind) == wanted) types.push_back(type.type);
  return types;
}

/// The fixed entries, then what the catalogue adds for the kind: a type that it brings must not get lost.
std::vector<std::string> withCatalogue(std::vector<std::string> entries, Session& session, std::string_view kind) {
  for (std::string& type : typesOfKind(session, kind))
    if (std::find(entries.begin(), entries.end(), type) == entries.end()) entries.push_back(std::move(type));
  return entries;
}

/// Widths in letters "W"; a column without a sample is as wide as its title.
double defaultWidth(int number, const SpreadColumn& column) {
  switch (number) {
    case col::kJapaneseName:
      return 18;
    case col::kFieldName:
      return 12;
    case col::kPmark:
    case col::kClass:
      return 6;
    case col::kValueList:
      return 8;
    case col::kRemark:
      return 16;
    case col::kKey:
    case col::kType:
    case col::kWholeDigits:
    case col::kFractionDigits:
    case col::kLength:
    case col::kNull:
    case col::kDefault:
      return 4;
    default:
      return static_cast<double>(gLenB(column.title));
  }
}

/// A width that cuts neither the title nor an entry of usual length. A half-width letter is narrower than a "W", and a
/// margin goes around it.
double fittingWidth(const SpreadColumn& column) {
  constexpr std::size_t kUsualEntry = 10;
  std::size_t longest = gLenB(column.title);
  for (const std::string& entry : column.entries) longest = std::max(longest, std::min(gLenB(entry), kUsualEntry));
  return static_cast<double>(longest) * 0.75 + 1;
}

/// The word of a mode in the settings; the grid's own name for those that share the plain columns.
std::string_view modeWord(DetailMode mode) {
  switch (mode) {
    case DetailMode::Member:
      return "メンバ";
    case DetailMode::Prj:
      return "PGCont";
    case DetailMode::FixedValue:
      return "固定値";
    case DetailMode::Table:
    case DetailMode::Text:
      break;
  }
  return "Spread";
}

void setWidths(const Session& session, Columns& columns, DetailMode mode, bool keepWidths) {
  for (int number = 1; number <= col::kCount; ++number) {
    SpreadColumn& column = columns[static_cast<std::size_t>(number - 1)];
    column.width = std::max({column.width, defaultWidth(number, column), fittingWidth(column)});
    if (!keepWidths || !session.ini) continue;
    const std::string stored = gGetFormSetting(*session.ini, "frmTBDetail", widthKey(mode, number));
    if (!isNumeric(stored)) continue;
    const double width = gVal(stored);
    column.width = width < 2 ? static_cast<double>(gLenB(column.title)) : width;
  }
}

void take(const Session& session, frmTBDetail& screen, Columns columns, DetailMode mode, bool keepWidths) {
  setWidths(session, columns, mode, keepWidths);
  screen.Spread.setColumns(std::move(columns));
  screen.columnsFor.clear();
}

}  // namespace

std::string widthKey(DetailMode mode, int col) {
  return "frmTBDetail" + std::string(modeWord(mode)) + "_" + std::to_string(col);
}

void pSet_Spread4Table(Session& session, frmTBDetail& screen, bool keepWidths) {
  const bool text = screen.mode == DetailMode::Text;
  const bool view = screen.lblBunrui.caption == "VIEW";
  Columns columns = hiddenColumns();
  show(columns, col::kJapaneseName, view ? "DB.項目名 (物理)" : "日本語項目名 (論理)", CellKind::Edit, 80);
  show(columns, col::kFieldName, view ? "VIEW.表示名" : "項目名 (物理)", CellKind::Edit, 50);
  show(columns, col::kKey, "Key", CellKind::Check);
  showList(
      columns, col::kType, "型",
      text ? std::vector<std::string>{"9", "S9", "S9 C3", "X", "N"} : typesOfKind(session, screen.lblFileType.caption));
  showNumber(columns, col::kWholeDigits, text ? "全体桁数" : "整数桁数", CellKind::Integer, 0, kLargestDigits);
  showNumber(columns, col::kFractionDigits, "少数桁数", CellKind::Integer, 0, kLargestDigits);
  showNumber(columns, col::kLength, text ? "開始" : "長さ", CellKind::Integer, 0, kLargestLength);
  if (text) {
    showNumber(columns, col::kNull, "終了", CellKind::Integer, 0, kLargestLength);
  } else {
    showList(columns, col::kNull, "NULL値", {"NULL", "NOT NULL"});
  }
  show(columns, col::kPmark, "個人情報", CellKind::Check);
  if (!screen.PicPmark.visible) hide(columns, col::kPmark);
  showList(columns, col::kClass, "項目分類",
           {"コード", "フラグ", "区分", "名称", "金額", "数量(値)", "日付", "その他"});
  show(columns, col::kValueList, "値リスト", CellKind::Static);
  show(columns, col::kRemark, "備考", CellKind::Edit, 255);
  show(columns, col::kDefault, "初期値", CellKind::Edit, 50);
  show(columns, col::kDomainName, "Domain名", CellKind::Static);
  show(columns, col::kDomainId, "DomainID", CellKind::Static);
  showList(columns, col::kRangeKind, "範囲分類", {" ", "≧", "＞", "≦", "＜", "範囲"});
  showNumber(columns, col::kRangeStart, "範囲開始", CellKind::Float, -kLargestRange, kLargestRange);
  showNumber(columns, col::kRangeEnd, "範囲終了", CellKind::Float, -kLargestRange, kLargestRange);
  show(columns, col::kForeign, "外部参照(FK)", CellKind::Static);
  show(columns, col::kChanged, "変更", CellKind::Static);
  show(columns, col::kForeignTableId, "FK:TBID", CellKind::Static);
  show(columns, col::kForeignRowNo, "FK:FDROWNO", CellKind::Static);
  show(columns, col::kDbCheck, "DB照合", CellKind::Static);
  show(columns, col::kOrder, "表示順", CellKind::Static);
  showAudit(columns);
  for (int number = col::kChanged; number <= col::kAuthor; ++number) hide(columns, number);
  take(session, screen, std::move(columns), DetailMode::Table, keepWidths);
}

void pSet_Spread4Member(Session& session, frmTBDetail& screen, bool keepWidths) {
  Columns columns = hiddenColumns();
  show(columns, col::kJapaneseName, "内　　　　容", CellKind::Edit, 100);
  showList(columns, col::kType, "分類",
           withCatalogue({"Mail", "役割", "参加日", "終了日", "メモ", ""}, session, screen.lblFileType.caption));
  show(columns, col::kRemark, "備考", CellKind::Edit);
  showAudit(columns);
  take(session, screen, std::move(columns), DetailMode::Member, keepWidths);
}

void pSet_Spread4Fixed(Session& session, frmTBDetail& screen, bool keepWidths) {
  Columns columns = hiddenColumns();
  show(columns, col::kJapaneseName, "対象(テーブル名/項目名など)", CellKind::Edit, 50);
  show(columns, col::kFieldName, "値", CellKind::Edit, kStoredText);
  showList(columns, col::kType, "型", withCatalogue({"数値", "文字", "Yes/No"}, session, screen.lblFileType.caption));
  show(columns, col::kRemark, "備考", CellKind::Edit, 255);
  showAudit(columns);
  take(session, screen, std::move(columns), DetailMode::FixedValue, keepWidths);
}

void pSet_Spread4Prj(Session& session, frmTBDetail& screen, bool keepWidths) {
  Columns columns = hiddenColumns();
  show(columns, col::kJapaneseName, "管理No", CellKind::Edit, 50);
  show(columns, col::kFieldName, "項目名", CellKind::Edit, kStoredText);
  show(columns, col::kKey, "プログラムID", CellKind::Edit, 50);
  showList(columns, col::kType, "開発言語", typesOfKind(session, screen.lblFileType.caption));
  SpreadColumn& language = columns[col::kType - 1];
  language.open = language.oneLine = true;
  language.maxLength = kStoredText;
  showOwn(*session.gDB, columns, col::kWholeDigits, "開始日").date = true;
  showOwn(*session.gDB, columns, col::kFractionDigits, "完了日").date = true;
  showNumber(columns, col::kLength, "残工数", CellKind::Integer, -kLargestLength, kLargestLength);
  show(columns, col::kNull, "予定工数", CellKind::Edit, kStoredText);
  showList(columns, col::kClass, "進捗分類",
           {"×未着手", "△作成中", "○完了", "■中止", "■対象外", "△修正中", "△機能拡張中", "△バグ調査中", "△バグ対応中"});
  show(columns, col::kValueList, "項目分類", CellKind::Edit, 50);
  show(columns, col::kRemark, "概要", CellKind::Edit, 255);
  show(columns, col::kDefault, "開始日", CellKind::Edit, kStoredText);
  show(columns, col::kRangeKind, "完了日", CellKind::Edit, kStoredText);
  show(columns, col::kRangeStart, "範囲開始", CellKind::Edit, kStoredText);
  show(columns, col::kRangeEnd, "範囲終了", CellKind::Edit, kStoredText);
  show(columns, col::kForeign, "担当", CellKind::Edit, 50);
  showOwn(*session.gDB, columns, col::kDbCheck, "参照仕様書ファイル").maxLength = 100;
  show(columns, col::kOrder, "表示順", CellKind::Static);
  showAudit(columns);
  for (const int date : {col::kWholeDigits, col::kFractionDigits, col::kDefault, col::kRangeKind})
    columns[static_cast<std::size_t>(date - 1)].width = kDateWidth;
  take(session, screen, std::move(columns), DetailMode::Prj, keepWidths);
}

void prepareSpread(Session& session, frmTBDetail& screen, bool locked) {
  std::string wanted = std::to_string(static_cast<int>(screen.mode)) + "\t" + toLower(screen.lblFileType.caption);
  wanted += locked ? "\tlocked" : "\t";
  wanted += screen.batch ? "\tbatch" : "\t";
  wanted += screen.PicPmark.visible ? "\tpmark" : "\t";
  wanted += screen.lblBunrui.caption == "VIEW" ? "\tview" : "\t";
  if (screen.columnsFor == wanted) {
    screen.Spread.setMaxRows(0);
    return;
  }
  const bool keepWidths = !screen.batch;
  switch (screen.mode) {
    case DetailMode::Prj:
      pSet_Spread4Prj(session, screen, keepWidths);
      break;
    case DetailMode::Member:
      pSet_Spread4Member(session, screen, keepWidths);
      break;
    case DetailMode::FixedValue:
      pSet_Spread4Fixed(session, screen, keepWidths);
      break;
    case DetailMode::Table:
    case DetailMode::Text:
      pSet_Spread4Table(session, screen, keepWidths);
      break;
  }
  if (locked) screen.Spread.lockAll();
  screen.columnsFor = std::move(wanted);
}

}  // namespace quillmarden
