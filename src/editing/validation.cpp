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

/// The faults of one check, each told once, in the order of their finding; and what is only told, since it was stored
/// so and stops no save.
struct Faults {
  std::vector<std::string> texts;
  std::vector<std::string> unknownTypes;
  std::vector<std::string> withoutDigits;

  void add(std::string_view text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
  }
};

/// Non-empty names of a column as they will be stored, with their rows.
struct NamedRow {
  std::string name;
  int row;
};

std::vector<NamedRow> namesOf(const Session& session, const frmTBDetail& screen, int column) {
  std::vector<NamedRow> names;
  long number = 0;
  for (int row = 1; row <= screen.Spread.maxRows(); ++row) {
    if (!isKept(screen, row)) continue;
    ++number;
    std::string name = column == col::kFieldName ? storedFieldName(session, screen, row)
                                                 : storedJapaneseName(session, screen, row, number);
    if (!name.empty()) names.push_back({std::move(name), row});
  }
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

/// Paints the names of a column by whether they will be stored more than once. True when one will. To databases names
/// of fields are the same in any case, and so are numbers of programs to their readers.
bool paintDuplicates(const Session& session, frmTBDetail& screen, int column) {
  const bool anyCase = column == col::kFieldName || screen.mode == DetailMode::Prj;
  std::vector<NamedRow> names = namesOf(session, screen, column);
  std::unordered_map<std::string_view, int> count;
  for (NamedRow& named : names) {
    if (anyCase) named.name = toLower(named.name);
    ++count[named.name];
  }
  bool found = false;
  for (const NamedRow& named : names) {
    const bool duplicate = count[named.name] > 1;
    screen.Spread.setBackColour(column, named.row, duplicate ? kRed : kWhite);
    found = found || duplicate;
  }
  return found;
}

/// Names that stand twice or that no script can hold. Noted in this order.
void checkNames(const Session& session, frmTBDetail& screen, Faults& faults) {
  const bool japanese = paintDuplicates(session, screen, col::kJapaneseName);
  const bool physical = paintDuplicates(session, screen, col::kFieldName);
  if (japanese || physical) faults.add(kDuplicate);
  for (const NamedRow& named : namesOf(session, screen, col::kFieldName)) {
    if (!pChkFieldChar(named.name)) continue;
    screen.Spread.setBackColour(col::kFieldName, named.row, kRed);
    faults.add(kBadCharacter);
  }
}

void addLines(std::string& text, std::string_view head, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  text.append(text.empty() ? "" : "\n").append(head);
  for (const std::string& line : lines) text.append("\n  ").append(line);
}

/// What the save leaves as it is, though the catalogue says otherwise.
void tellNotes(Host& host, const Faults& faults) {
  std::string text;
  addLines(text, "型が一覧にありません. このまま保存します.", faults.unknownTypes);
  addLines(text, "整数桁数が未設定です. このまま保存します.", faults.withoutDigits);
  if (!text.empty()) gMsgBox(host, text, kOkOnly | kInformationIcon, "確認");
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
  if (changedRows(screen.Spread) > 0) {
    tellNotes(host, faults);
    return false;
  }
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

/// The rows as the Repository holds them, read when the first of them is asked for.
class StoredRows {
 public:
  StoredRows(Session& session, const frmTBDetail& screen) : session_(session), screen_(screen) {}

  /// Whether the row was stored with the type that it has, and without digits.
  bool withoutDigits(int row) {
    if (!read_) read();
    const auto stored = types_.find(screen_.Spread.rowTag(row));
    return stored != types_.end() && equalsNoCase(stored->second, trim(screen_.Spread.text(col::kType, row)));
  }

 private:
  void read() {
    read_ = true;
    Recordset rows = session_.gDB->openRecordset("SELECT ROWNO, 型, 整数桁数 FROM MAS_TABLEDETAILES WHERE ID = " +
                                                 screen_.lblID.caption);
    for (; !rows.eof(); rows.moveNext())
      if (rows.integer(2) == 0) types_.emplace(static_cast<long>(rows.integer(0)), trim(rows.text(1)));
  }

  Session& session_;
  const frmTBDetail& screen_;
  bool read_ = false;
  std::unordered_map<long, std::string> types_;  ///< of the rows without digits
};

std::string nameAndType(const Spread& grid, int row) {
  const std::string_view name = trim(grid.text(col::kFieldName, row));
  std::string line(name.empty() ? trim(grid.text(col::kJapaneseName, row)) : name);
  return line.append(" : ").append(trim(grid.text(col::kType, row)));
}

void checkDigits(frmTBDetail& screen, int row, const DigitRule& rule, StoredRows& stored, Faults& faults) {
  Spread& grid = screen.Spread;
  const std::string_view type = trim(grid.text(col::kType, row));
  const bool missing = !needsNoDigits(rule, type) && gStr2Double(grid.text(col::kWholeDigits, row)) == 0;
  const bool storedSo =
      missing && takesNoDigitsEither(trim(screen.lblFileType.caption), type) && stored.withoutDigits(row);
  if (storedSo) faults.withoutDigits.push_back(nameAndType(grid, row));
  if (missing && !storedSo) faults.add("整数桁数が未設定です.");
  paint(grid, col::kWholeDigits, row, missing && !storedSo);
}

/// The checks of one changed row that holds a name.
void checkRow(Session& session, frmTBDetail& screen, int row, SqlServerCheck& sqlServer, StoredRows& stored,
              Faults& faults) {
  Spread& grid = screen.Spread;
  const std::string_view type = trim(grid.text(col::kType, row));
  // What the catalogue lacks, it says nothing about: neither digits nor whether it is a number.
  const bool unknown = isUnknownType(screen, row);
  if (type.empty()) faults.add(kNoType);
  if (unknown) faults.unknownTypes.push_back(nameAndType(grid, row));
  paint(grid, col::kType, row, type.empty() || unknown);
  sqlServer.row(grid, row, faults);

  const DigitRule rule = gFileType_NoDigits(*session.gDB, session.catalogue, trim(screen.lblFileType.caption), type);
  // A list of fixed values has no column for digits.
  if (screen.mode != DetailMode::FixedValue && !unknown) checkDigits(screen, row, rule, stored, faults);
  // In a text file's layout the column holds the end position.
  if (screen.mode != DetailMode::Text) {
    const bool nullable = isKey(grid.text(col::kKey, row)) && grid.text(col::kNull, row) != "NOT NULL";
    if (nullable) faults.add("主キーの項目は必ずNOT NULLです.");
    paint(grid, col::kNull, row, nullable);
  }
  checkRange(grid, row, rule.numeric || unknown, faults);
}

void checkRows(Session& session, frmTBDetail& screen, Faults& faults) {
  Spread& grid = screen.Spread;
  SqlServerCheck sqlServer;
  sqlServer.applies = trim(screen.lblFileType.caption) == "SQL Server";
  StoredRows stored(session, screen);
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (!isChanged(grid, row)) {
      if (!sqlServer.row(grid, row, faults)) return;
    } else if (holdsNames(grid, row)) {
      checkRow(session, screen, row, sqlServer, stored, faults);
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
  if (screen.mode == DetailMode::Table) checkNames(session, screen, faults);
  for (const std::string& text : rows.texts) faults.add(text);
  faults.unknownTypes = std::move(rows.unknownTypes);
  faults.withoutDigits = std::move(rows.withoutDigits);
  return conclude(host, screen, faults);
}

bool pChkViewDetails(Session& session, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults faults;
  checkNames(session, screen, faults);
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
    const bool unknown = isUnknownType(screen, row);
    if (unknown && isChanged(grid, row)) faults.unknownTypes.push_back(nameAndType(grid, row));
    grid.setBackColour(col::kType, row, repeated || unknown ? kRed : kWhite);
  }
  return conclude(host, screen, faults);
}

bool pChkPrjDetails(Session& session, Host& host, frmTBDetail& screen) {
  beginCheck(host, screen);
  Faults faults;
  if (paintDuplicates(session, screen, col::kJapaneseName)) faults.add("管理IDに重複があります.");
  return conclude(host, screen, faults);
}

}  // namespace quillmarden
