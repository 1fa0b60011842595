#include "editing/validation.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr std::string_view kDuplicate = "日本語/項目名に重複があります.";
constexpr std::string_view kBadCharacter = "項目名に, or 'が含まれています.";
constexpr std::string_view kNoType = "型が未設定です.";
constexpr std::string_view kComputedColumn = "計算式";

/// The faults of one check, each told once, in the order of their finding.
struct Faults {
  std::vector<std::string> texts;

  void add(std::string_view text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
  }
};

/// Non-empty names of a column with their rows.
struct NamedRow {
  std::string name;
  int row;
};

std::vector<NamedRow> namesOf(const Spread& grid, int column) {
  std::vector<NamedRow> names;
  for (int row = 1; row <= grid.maxRows(); ++row)
    if (std::string name(trim(grid.text(column, row))); !name.empty()) names.push_back({std::move(name), row});
  return names;
}

bool isChanged(const Spread& grid, int row) { return grid.text(col::kChanged, row) == kChangedMark; }

int changedRows(const Spread& grid) {
  int count = 0;
  for (int row = 1; row <= grid.maxRows(); ++row) count += isChanged(grid, row) ? 1 : 0;
  return count;
}

bool holdsNames(const Spread& grid, int row) {
  return !trim(grid.text(col::kJapaneseName, row)).empty() || !trim(grid.text(col::kFieldName, row)).empty();
}

/// A bad cell is red; a clean one has its ground again, which for a cell that a domain owns is that of buttons.
void paint(Spread& grid, int column, int row, bool bad) {
  const bool owned = grid.kind(column, row) == CellKind::Static;
  grid.setBackColour(column, row, bad ? kRed : owned ? kButtonFace : kWhite);
}

/// Paints the names of a column by whether they stand more than once. True when one does.
bool paintDuplicates(Spread& grid, int column) {
  const std::vector<NamedRow> names = namesOf(grid, column);
  std::unordered_map<std::string_view, int> count;
  for (const NamedRow& named : names) ++count[named.name];
  bool found = false;
  for (const NamedRow& named : names) {
    const bool duplicate = count[named.name] > 1;
    grid.setBackColour(column, named.row, duplicate ? kRed : kWhite);
    found = found || duplicate;
  }
  return found;
}

/// Names that stand twice or that no script can hold. Noted in this order.
void checkNames(Spread& grid, Faults& faults) {
  const bool japanese = paintDuplicates(grid, col::kJapaneseName);
  const bool physical = paintDuplicates(grid, col::kFieldName);
  if (japanese || physical) faults.add(kDuplicate);
  for (const NamedRow& named : namesOf(grid, col::kFieldName)) {
    if (!pChkFieldChar(named.name)) continue;
    grid.setBackColour(col::kFieldName, named.row, kRed);
    faults.add(kBadCharacter);
  }
}

/// What every check ends with: the faults in one box, or the word that there is nothing to save. False when the save
/// may go on.
bool conclude(Host& host, frmTBDetail& screen, const Faults& faults) {
  pPutWaitMsg(host, screen, false, "");
  if (!faults.texts.empty()) {
    std::string all;
    for (const std::string& text : faults.texts) all.append(all.empty() ? "" : "\n").append(text);
    gMsgBox(host, all, kOkOnly | kWarningIcon, "入力エラー");
    return true;
  }
  if (changedRows(screen.Spread) > 0) return false;
  gMsgBox(host, "データの変更はありませんでした.", kOkOnly, "確認");
  return true;
}

void beginCheck(Host& host, frmTBDetail& screen) { pPutWaitMsg(host, screen, true, "内容をチェック中です...."); }

/// What is special to SQL Server: one identity column a table, and a formula behind a computed column.
struct SqlServerCheck {
  bool applies = false;
  bool identitySeen = false;

  /// False when the row has a fault.
  bool row(Spread& grid, int row, Faults& faults) {
    if (!applies) return true;
    const std::string type = toLower(trim(grid.text(col::kType, row)));
    bool clean = true;
    if (type.find("identity") != std::string::npos) {
      if (identitySeen) {
        faults.add("identityは、テーブルに一つのみ定義できます.");
        clean = false;
      }
      identitySeen = true;
    }
    if (type == kComputedColumn && trim(grid.text(col::kRemark, row)).empty()) {
      faults.add("型=計算式のときは、備考に計算式を設定して下さい.");
      clean = false;
    }
    if (!clean) grid.setBackColour(col::kType, row, kRed);
    return clean;
  }
};

bool needsNoDigits(const DigitRule& rule, std::string_view type) {
  constexpr std::string_view kWithout[] = {"date", "datetime", "Yes/No型", "ｵｰﾄﾅﾝﾊﾞｰ型", "日付/時刻型", "数値型"};
  return rule.noDigits || std::any_of(std::begin(kWithout), std::end(kWithout),
                                      [&](std::string_view without) { return equalsNoCase(without, type); });
}

void checkRange(Spread& grid, int row, bool numeric, Faults& faults) {
  const auto empty = [&](int column) { return trim(grid.text(column, row)).empty(); };
  const bool ranged = !empty(col::kRangeKind);
  const bool noNumber = ranged && !numeric;
  const bool noStart = ranged && empty(col::kRangeStart);
  const bool noEnd = ranged && trim(grid.text(col::kRangeKind, row)) == "範囲" && empty(col::kRangeEnd);
  if (noNumber) faults.add("数字以外では範囲の設定はできません.");
  if (noStart) faults.add("範囲開始が未設定です.");
  if (noEnd) faults.add("範囲終了が未設定です.");
  paint(grid, col::kRangeKind, row, noNumber);
  paint(grid, col::kRangeStart, row, noStart);
  paint(grid, col::kRangeEnd, row, noEnd);
}

/// The checks of one changed row that holds a name.
void checkRow(Session& session, frmTBDetail& screen, int row, SqlServerCheck& sqlServer, Faults& faults) {
  Spread& grid = screen.Spread;
  const std::string_view type = trim(grid.text(col::kType, row));
  if (type.empty()) faults.add(kNoType);
  paint(grid, col::kType, row, type.empty());
  sqlServer.row(grid, row, faults);

  const DigitRule rule = gFileType_NoDigits(*session.gDB, session.catalogue, trim(screen.lblFileType.caption), type);
  // A list of fixed values has no column for digits.
  if (screen.mode != DetailMode::FixedValue && !needsNoDigits(rule, type)) {
    const bool missing = gStr2Double(grid.text(col::kWholeDigits, row)) == 0;
    if (missing) faults.add("整数桁数が未設定です.");
    paint(grid, col::kWholeDigits, row, missing);
  }
  // In a text file's layout the column holds the end position.
  if (screen.mode != DetailMode::Text) {
    const bool nullable = isKey(grid.text(col::kKey, row)) && grid.text(col::kNull, row) != "NOT NULL";
    if (nullable) faults.add("主キーの項目は必ずNOT NULLです.");
    paint(grid, col::kNull, row, nullable);
  }
  checkRange(grid, row, rule.numeric, faults);
}

void checkRows(Session& session, frmTBDetail& screen, Faults& faults) {
  Spread& grid = screen.Spread;
  SqlServerCheck sqlServer;
  sqlServer.applies = trim(screen.lblFileType.caption) == "SQL Server";
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (!isChanged(grid, row)) {
      if (!sqlServer.row(grid, row, faults)) return;
    } else if (holdsNames(grid, row)) {
      checkRow(session, screen, row, sqlServer, faults);
    }
  }
}

}  // namespace

bool pChkFieldChar(std::string_view name) { return name.find_first_of(",'") != std::string_view::npos; }

bool pChkTableDetails(Session& session, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults rows;
  checkRows(session, screen, rows);
  Faults faults;
  // Fillers of a text file and fixed values may bear the same name more than once.
  if (screen.mode == DetailMode::Table) checkNames(screen.Spread, faults);
  for (const std::string& text : rows.texts) faults.add(text);
  return conclude(host, screen, faults);
}

bool pChkViewDetails(Session&, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults faults;
  checkNames(screen.Spread, faults);
  return conclude(host, screen, faults);
}

bool pChkMemberDetails(Session&, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults faults;
  Spread& grid = screen.Spread;
  std::unordered_set<std::string> once;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const std::string type(trim(grid.text(col::kType, row)));
    const std::string_view content = trim(grid.text(col::kJapaneseName, row));
    if (type.empty()) {
      if (!holdsNames(grid, row)) continue;
      faults.add(kNoType);
      grid.setBackColour(col::kType, row, kRed);
      continue;
    }
    const bool isDate = type == "参加日" || type == "終了日";
    const bool noDate = isDate && !content.empty() && !parseDateTime(content);
    if (noDate) faults.add("日付以外が設定されています.");
    grid.setBackColour(col::kJapaneseName, row, noDate ? kRed : kWhite);
    const bool repeated = (isDate || type == "メモ" || type == "役割") && !once.insert(type).second;
    if (repeated) faults.add(kDuplicate);
    grid.setBackColour(col::kType, row, repeated ? kRed : kWhite);
  }
  return conclude(host, screen, faults);
}

bool pChkPrjDetails(Session&, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults faults;
  if (paintDuplicates(screen.Spread, col::kJapaneseName)) faults.add("管理IDに重複があります.");
  return conclude(host, screen, faults);
}

}  // namespace quillmarden
