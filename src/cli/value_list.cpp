#include "cli/value_list.h"

#include <fmt/format.h>

#include <optional>
#include <unordered_map>

#include "cli/console_session.h"
#include "cli/generate.h"
#include "cli/grid_file.h"
#include "common/numbers.h"
#include "common/text.h"
#include "dictionary/frm_division.h"
#include "excel/value_list_book.h"
#include "repository/system_record.h"

namespace quillmarden {

namespace {

struct ValueListOptions {
  std::string system;
  std::string list;  ///< "" for the list of all
  std::string saveFile;
  std::string output;
  std::string kind;  ///< 種別, to filter by or to save; 型 likewise
  std::string type;
  std::string memo;
  std::optional<bool> shared;
  bool withShared = false;  ///< those that other Systems share as well
  bool gridOnly = false;
};

void addValueListOptions(OptionSet& set, ValueListOptions& options) {
  addSystem(set, options.system);
  set.text("--list", options.list, "NAME", "値名称。省略時は値リストの一覧を表示する").filled();
  set.flag("--with-shared", options.withShared, "一覧に、他システムの全システム共通の値リストも表示する");
  set.flag("--grid", options.gridOnly, "値のみ表示する");
  set.text("--save", options.saveFile, "FILE", "値のファイル(UTF-8)。値リストの値をチェックして、全て置き換える")
      .needs("--list");
  set.text("--output", options.output, "FILE", "表示せずに、値リストをこのファイルのブックに出力する")
      .needs("--list")
      .excludes("--save");
  set.text("--class", options.kind, "TEXT", "種別: フラグ か 区分。一覧を絞る。--list があるときは登録する")
      .only({"フラグ", "区分"});
  set.text("--type", options.type, "TEXT", "型: 数値、文字 か Yes/No。一覧を絞る。--list があるときは登録する")
      .only({"数値", "文字", "Yes/No"});
  set.text("--memo", options.memo, "TEXT", "値の説明を登録する").needs("--list");
  set.choice("--shared", options.shared, "yes|no", "全システム共通とするかどうかを登録する",
             {{"yes", true}, {"no", false}})
      .needs("--list");
}

namespace valueCol = division_col;

/// The cells that a file holds.
constexpr int kFileColumns = valueCol::kOutline;

/// The columns of a file for values of this type.
Spread fileGrid(const frmDivision& screen) {
  std::vector<SpreadColumn> columns;
  for (int column = 1; column <= kFileColumns; ++column) columns.push_back(screen.Spread.column(column));
  Spread grid;
  grid.setColumns(std::move(columns));
  return grid;
}

bool isSet(std::string_view preset) { return preset == "-1" || preset == "○"; }

std::string valueFault(std::string_view value, bool numeric, std::unordered_map<std::string, std::size_t>& seen) {
  if (trim(value).empty()) return "";
  const double number = gVal(value);
  if (numeric && (number < -999 || number > 999 || number != static_cast<double>(static_cast<long>(number))))
    return "が-999から999までの整数ではありません.";
  if (!seen.emplace(value, seen.size()).second) return fmt::format(" : 値{}  が重複しています.", value);
  return "";
}

/// What the screen would not let a person type, and its check for equal values, with the line and cell.
std::string valueListFault(GridText& text, const Spread& grid, const Spread& loaded) {
  if (!text.fault.empty()) return text.fault;
  const bool numeric = grid.column(valueCol::kValue).kind == CellKind::Integer;
  std::unordered_map<std::string, std::size_t> seen;
  bool hasPreset = false;
  for (std::size_t row = 0; row < text.rows.size(); ++row) {
    const auto& cells = text.rows[row];
    const std::string_view preset = trim(cells[0]);
    if (!preset.empty() && preset != "0" && !isSet(preset))
      return cellName(row + 1, valueCol::kPreset, grid) + "は、-1 か 0 です.";
    if (isSet(preset) && hasPreset) return cellName(row + 1, valueCol::kPreset, grid) + "が2件以上あります.";
    hasPreset = hasPreset || isSet(preset);
    const std::string fault =
        cells.size() < valueCol::kValue ? "" : valueFault(cells[valueCol::kValue - 1], numeric, seen);
    if (!fault.empty()) return cellName(row + 1, valueCol::kValue, grid) + fault;
  }
  return takeCells(text, grid, loadedByColumn(loaded));
}

/// Puts the file's rows in the place of the grid's; an entry whose value stays keeps its maker.
void replaceEntries(Spread& grid, const std::vector<std::vector<std::string>>& rows) {
  std::unordered_map<std::string, std::pair<std::string, std::string>> makers;
  for (int row = 1; row <= grid.maxRows(); ++row)
    makers.emplace(grid.text(valueCol::kValue, row),
                   std::pair(grid.text(valueCol::kAuthor, row), grid.text(valueCol::kCreated, row)));
  grid.setMaxRows(0);
  grid.setMaxRows(static_cast<int>(rows.size()));
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const auto& cells = rows[static_cast<std::size_t>(row - 1)];
    grid.setText(valueCol::kPreset, row, isSet(trim(cells[0])) ? "-1" : "0");
    for (std::size_t cell = 1; cell < cells.size(); ++cell) grid.setText(static_cast<int>(cell) + 1, row, cells[cell]);
    const auto maker = makers.find(std::string(grid.text(valueCol::kValue, row)));
    if (maker == makers.end()) continue;
    grid.setText(valueCol::kAuthor, row, maker->second.first);
    grid.setText(valueCol::kCreated, row, maker->second.second);
  }
}

void putLists(std::string& output, const ListBox& lists) {
  for (const std::string& row : lists.rows) {
    const ValueListItem item = splitValueListRow(row);
    for (const std::string* cell : {&item.name, &item.system, &item.kind, &item.type, &item.memo}) {
      if (cell != &item.name) output += '\t';
      putCell(output, *cell);
    }
    output += '\n';
  }
}

void putList(Run& run, const frmDivision& screen, bool gridOnly) {
  std::string& output = run.output;
  const ValueListItem item = valueListOnShow(screen);
  const auto line = [&](std::string_view name, std::string_view value) {
    output.append(name).append("\t");
    putCell(output, value);
    output += '\n';
  };
  if (!gridOnly) {
    line("値名称", item.name);
    line("システム名", item.system);
    line("種別", item.kind);
    line("型", item.type);
    line("内容", item.memo);
    output += '\n';
  }
  for (int row = 1; row <= screen.Spread.maxRows(); ++row) {
    if (trim(screen.Spread.text(valueCol::kValue, row)).empty()) continue;
    for (int column = 1; column <= kFileColumns; ++column) {
      if (column > 1) output += '\t';
      putCell(output, screen.Spread.text(column, row));
    }
    output += '\n';
  }
}

/// The System's own list of that name, else one that another System shares.
std::optional<ValueListItem> findList(const frmDivision& screen, std::string_view system, std::string_view name) {
  std::optional<ValueListItem> shared;
  for (const std::string& row : screen.lstDivision.rows) {
    ValueListItem item = splitValueListRow(row);
    if (!equalsNoCase(trim(item.name), trim(name))) continue;
    if (equalsNoCase(item.system, system)) return item;
    if (!shared) shared = std::move(item);
  }
  return shared;
}

bool changesRecord(const ValueListOptions& options) {
  return !options.kind.empty() || !options.type.empty() || !options.memo.empty() || options.shared;
}

/// Fills the record's screen with what is there and what the options say.
bool fillRecord(Run& run, const ValueListOptions& options, frmDiviInfo& info,
                const std::optional<ValueListItem>& item) {
  if (pGetDivisionInfo(run.session, run.host, info, item ? item->name : "")) return false;
  if (!item) info.TxtDivName.text = options.list;
  if (!options.kind.empty()) info.CmbClass.text = options.kind;
  if (!options.type.empty()) info.CmbKata.text = options.type;
  if (!options.memo.empty()) info.Txtbiko.text = options.memo;
  if (options.shared) info.ChkAllSystem.value = *options.shared;
  return !pChkDivisionInfo(run.session, run.host, info);
}

/// Shows the list under its saved type, takes the file's entries and saves them.
bool saveEntries(Run& run, const std::string& file, frmDivision& screen, const ValueListItem& item,
                 std::string_view text) {
  if (item.type == "Yes/No") return failure(run, "Yes/No型では、値を登録できません.") == kDone;
  if (showValueList(run.session, run.host, screen, item)) return false;
  const Spread grid = fileGrid(screen);
  GridText lines = parseGridText(text, grid);
  if (const std::string fault = valueListFault(lines, grid, screen.Spread); !fault.empty())
    return failure(run, fmt::format("{}\n {}", file, fault)) == kDone;
  replaceEntries(screen.Spread, lines.rows);
  return !CmdUpDate_Click(run.session, run.host, screen);
}

ExitStatus saveList(Run& run, const ValueListOptions& options, frmDivision& screen,
                    const std::optional<ValueListItem>& item) {
  const std::string& system = run.session.gCurrentSystemName;
  if (const Right right = mayChangeList(run.session, item ? item->system : system); !right)
    return failure(run, fmt::format("この値リストは編集できません.\n 値名称 : {}\n{}", options.list, right.reason));
  std::string text;
  if (!options.saveFile.empty() && !readFile(run, options.saveFile, text)) return kFailed;
  frmDiviInfo info;
  const bool record = changesRecord(options);
  if (record && !fillRecord(run, options, info, item)) return kFailed;

  // Record and entries together: a fault in the entries leaves no list without them.
  Database& database = *run.session.gDB;
  database.beginTrans();
  bool saved = !record || !pPutDivisionInfo(run.session, run.host, info);
  if (saved && !options.saveFile.empty()) {
    ValueListItem target = item.value_or(ValueListItem{});
    if (record)
      target = {info.TxtDivName.text, run.session.gCurrentSystemName, info.CmbClass.text, info.CmbKata.text,
                info.Txtbiko.text};
    saved = saveEntries(run, options.saveFile, screen, target, text);
  }
  if (saved)
    database.commitTrans();
  else
    database.rollback();
  return saved ? kDone : kFailed;
}

ExitStatus runValueList(Run& run, const ValueListOptions& options) {
  if (!enterSystem(run, options.system)) return kFailed;
  if (options.system == kAllSystems) return failure(run, "全システム共通では、値リストを扱えません.");
  const bool saves = !options.saveFile.empty() || (!options.list.empty() && changesRecord(options));

  frmDivision screen;
  frmDivision_Load(run.session, run.host, screen);
  const bool one = !options.list.empty();
  screen.ChkAllSystem.value = one || options.withShared;
  if (!one) {
    screen.CmbClass.text = options.kind;
    screen.CmbKata.text = options.type;
  }
  if (pGetDivisionList(run.session, run.host, screen)) return kFailed;
  if (!one) {
    putLists(run.output, screen.lstDivision);
    return kDone;
  }
  const auto item = findList(screen, run.session.gCurrentSystemName, options.list);
  if (!item && !changesRecord(options))
    return failure(run, fmt::format("指定の値リストが存在しません.\n 値名称 : {}", options.list));
  if (saves && !options.output.empty()) return failure(run, "登録とブックの出力は、同時に指定できません.");
  if (saves) return saveList(run, options, screen, item);
  if (showValueList(run.session, run.host, screen, *item)) return kFailed;
  if (!options.output.empty()) {
    BookRun books;
    books.outputFile = options.output;
    const std::string path = CmdExcel_Click(run.session, run.host, books, screen, false);
    return printFile(run, books, path);
  }
  putList(run, screen, options.gridOnly);
  return kDone;
}

}  // namespace

constinit const Command kValueListCommand{
    .name = "value-list",
    .group = CommandGroup::Tables,
    .help =
        "値リストの一覧(1行に、値名称、システム名、種別、型、内容)か、1つの値リスト(1行に、初期値、値、概要)"
        "を表示、登録する",
    .prepare = prepareCommand<ValueListOptions, addValueListOptions, runValueList>};

}  // namespace quillmarden
