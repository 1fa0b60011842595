#include "editing/loaded_rows.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <set>

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "editing/detail_parts.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr std::string_view kRowsForm = "#rows\t1";
constexpr std::string_view kRowsEnd = "#end";

using FieldRow = std::vector<Value>;

std::size_t placeOf(std::string_view column) {
  const auto& columns = loadedColumns();
  return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), column) - columns.begin());
}

/// The places of the columns that this file speaks of.
struct Places {
  std::size_t order = placeOf("表示順");
  std::size_t fieldName = placeOf("項目名");
  std::size_t japaneseName = placeOf("日本語名");
  std::size_t author = placeOf("作成者");
  std::size_t created = placeOf("作成年月日");
  std::size_t foreign = placeOf("外部参照");
  std::size_t foreignTable = placeOf("外部参照TABLEID");
  std::size_t foreignRow = placeOf("外部参照ROWNO");

  /// A save carries them along, and nobody changes them.
  bool isOrigin(std::size_t place) const { return place == author || place == created; }
  bool isForeign(std::size_t place) const { return place == foreign || place == foreignTable || place == foreignRow; }
};

const Places& places() {
  static const Places kPlaces;
  return kPlaces;
}

/// The value as the grid shows and keeps it. A flag or a domain that was never set is none, blanks are nothing, a row
/// without a NULL rule allows NULL, and the grid knows no seconds.
Value meaningOf(std::string_view column, const Value& value) {
  if (column == "Null値" && isNull(value)) return "NULL";
  if (isNull(value)) return {};
  if (column == "KEY" || column == "pmark" || column == "DomainID")
    return toInteger(value) == 0 ? Value{} : Value{toInteger(value)};
  if (column == "作成年月日") {
    const auto moment = parseDateTime(toText(value));
    return moment ? Value{formatDateTime(*moment, kMinuteForm)} : Value{};
  }
  if (const auto* text = std::get_if<std::string>(&value); text != nullptr && trim(*text).empty()) return {};
  return value;
}

bool sameRow(const FieldRow& one, const FieldRow& other) {
  for (std::size_t place = 0; place < one.size(); ++place)
    if (!places().isOrigin(place) && one[place] != other[place]) return false;
  return true;
}

std::string cellOf(const FieldRow& row, std::size_t place) { return std::string(trim(toText(row[place]))); }

/// What a row is called in a message.
std::string labelOf(const FieldRow& row) {
  const std::string name = cellOf(row, places().fieldName);
  const std::string japanese = cellOf(row, places().japaneseName);
  return name.empty() || japanese.empty() ? name + japanese : name + " " + japanese;
}

/// Pairs the rows that are still alone by a key that stands once on either side.
class Pairing {
 public:
  Pairing(const LoadedRows& before, const LoadedRows& now) : before_(before), now_(now) {}

  /// Rows that stand where they stood, as they stood.
  void unchanged() {
    for (const auto& [number, row] : before_.rows)
      if (const auto other = now_.rows.find(number); other != now_.rows.end() && sameRow(other->second, row))
        pair(number, number);
  }

  void by(const std::function<std::string(const FieldRow&)>& key) {
    const std::map<std::string, long> left = single(before_, key, [&](long number) { return pairs.contains(number); });
    const std::map<std::string, long> right = single(now_, key, [&](long number) { return taken_.contains(number); });
    for (const auto& [word, number] : left)
      if (const auto other = right.find(word); other != right.end()) pair(number, other->second);
  }

  /// Where no field has come, gone or moved, one with other names is the one that stood there, if it was made by the
  /// same person at the same moment.
  void byPlace() {
    if (before_.rows.size() != now_.rows.size()) return;
    for (const auto& [number, other] : pairs)
      if (number != other) return;
    for (const auto& [number, row] : before_.rows) {
      const auto other = now_.rows.find(number);
      if (pairs.contains(number) || other == now_.rows.end() || taken_.contains(number)) continue;
      if (row[places().author] == other->second[places().author] &&
          row[places().created] == other->second[places().created])
        pair(number, number);
    }
  }

  std::unordered_map<long, long> pairs;

 private:
  template <typename Done>
  static std::map<std::string, long> single(const LoadedRows& rows,
                                            const std::function<std::string(const FieldRow&)>& key, Done&& done) {
    std::map<std::string, long> found;
    std::set<std::string> twice;
    for (const auto& [number, row] : rows.rows) {
      const std::string word = key(row);
      if (done(number) || word.empty()) continue;
      if (!found.emplace(word, number).second) twice.insert(word);
    }
    for (const std::string& word : twice) found.erase(word);
    return found;
  }

  void pair(long number, long other) {
    pairs.emplace(number, other);
    taken_.insert(other);
  }

  const LoadedRows& before_;
  const LoadedRows& now_;
  std::set<long> taken_;
};

std::string changesOf(const FieldRow& before, const FieldRow& now) {
  std::string text;
  bool foreign = false;
  for (std::size_t place = 0; place < before.size(); ++place) {
    if (place == places().order || places().isOrigin(place) || before[place] == now[place]) continue;
    if (places().isForeign(place)) {
      // Another number alone is the same field, which has moved.
      foreign = foreign || place != places().foreignRow;
      continue;
    }
    text.append(text.empty() ? "" : ", ").append(loadedColumns()[place]);
    text.append(" [").append(toText(before[place])).append("] → [").append(toText(now[place])).append("]");
  }
  if (!foreign) return text;
  return text.append(text.empty() ? "外部参照 [" : ", 外部参照 [")
      .append(toText(before[places().foreign]))
      .append("] → [")
      .append(toText(now[places().foreign]))
      .append("]");
}

/// The foreign key that is stored goes into a row whose cells still show the one that was loaded.
bool takesStoredKey(Spread& grid, int row, const FieldRow& before, const FieldRow& now) {
  const std::pair<int, std::size_t> cells[] = {{col::kForeign, places().foreign},
                                               {col::kForeignTableId, places().foreignTable},
                                               {col::kForeignRowNo, places().foreignRow}};
  for (const auto& [column, place] : cells)
    if (grid.text(column, row) != toText(before[place])) return false;
  for (const auto& [column, place] : cells) grid.setText(column, row, toText(now[place]));
  return true;
}

/// A foreign key within the table that was put here goes to the number under which its field is stored, or goes.
void followOwnKey(Spread& grid, int row, std::string_view tableId, const std::unordered_map<long, long>& same) {
  if (trim(grid.text(col::kForeignTableId, row)) != tableId) return;
  const auto other = same.find(static_cast<long>(gVal(grid.text(col::kForeignRowNo, row))));
  if (other != same.end()) {
    grid.setText(col::kForeignRowNo, row, std::to_string(other->second));
    return;
  }
  for (const int column : {col::kForeign, col::kForeignTableId, col::kForeignRowNo}) grid.setText(column, row, "");
}

void appendValue(std::string& text, const Value& value) {
  if (isNull(value)) {
    text += 'n';
  } else if (std::holds_alternative<std::string>(value)) {
    text += 't';
    for (const char c : std::get<std::string>(value))
      text += c == '\t' ? "\\t" : c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\\' ? "\\\\" : std::string(1, c);
  } else {
    text.append(std::holds_alternative<double>(value) ? "r" : "i").append(toText(value));
  }
}

std::optional<Value> parseValue(std::string_view text) {
  if (text.empty()) return std::nullopt;
  const char kind = text.front();
  text.remove_prefix(1);
  if (kind == 'n') return Value{};
  if (kind == 'r') return Value{gVal(text)};
  if (kind == 'i') {
    std::int64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() ? std::optional<Value>(number) : std::nullopt;
  }
  if (kind != 't') return std::nullopt;
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escaped = text[i] == '\\' && i + 1 < text.size();
    const char c = escaped ? text[++i] : text[i];
    value += !escaped ? c : c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }
  return Value{value};
}

}  // namespace

const std::vector<std::string>& loadedColumns() {
  static const std::vector<std::string> kColumns = [] {
    std::vector<std::string> columns;
    for (const std::string_view column : fieldColumns())
      if (column != "ROWNO") columns.emplace_back(column);
    return columns;
  }();
  return kColumns;
}

LoadedRows loadedRows(Recordset& rows) {
  LoadedRows loaded{.known = true};
  std::vector<int> indexes;
  for (const std::string& column : loadedColumns()) indexes.push_back(rows.fieldIndex(column));
  const int rowNo = rows.fieldIndex("ROWNO");
  for (; !rows.eof(); rows.moveNext()) {
    FieldRow& row = loaded.rows[static_cast<long>(rows.integer(rowNo))];
    for (const int index : indexes) row.push_back(index < 0 ? Value{} : rows.value(index));
    for (std::size_t place = 0; place < row.size(); ++place) row[place] = meaningOf(loadedColumns()[place], row[place]);
  }
  return loaded;
}

bool sameRows(const LoadedRows& one, const LoadedRows& other) {
  return std::equal(
      one.rows.begin(), one.rows.end(), other.rows.begin(), other.rows.end(),
      [](const auto& row, const auto& twin) { return row.first == twin.first && sameRow(row.second, twin.second); });
}

bool foreignKeysFollowed(const LoadedRows& before, const LoadedRows& now) {
  return std::equal(before.rows.begin(), before.rows.end(), now.rows.begin(), now.rows.end(),
                    [](const auto& one, const auto& other) {
                      for (std::size_t place = 0; place < one.second.size(); ++place) {
                        const bool follows = place == places().foreign || place == places().foreignRow;
                        if (!follows && !places().isOrigin(place) && one.second[place] != other.second[place])
                          return false;
                      }
                      return one.first == other.first;
                    });
}

std::unordered_map<long, long> sameFields(const LoadedRows& before, const LoadedRows& now) {
  const auto name = [](const FieldRow& row) { return toLower(cellOf(row, places().fieldName)); };
  const auto japanese = [](const FieldRow& row) { return toLower(cellOf(row, places().japaneseName)); };
  Pairing pairing(before, now);
  pairing.unchanged();
  pairing.by([&](const FieldRow& row) { return name(row) + "\t" + japanese(row); });
  pairing.by(name);
  pairing.by(japanese);
  pairing.byPlace();
  return pairing.pairs;
}

std::vector<std::string> differences(const LoadedRows& before, const LoadedRows& now) {
  const std::unordered_map<long, long> same = sameFields(before, now);
  std::set<long> known;
  std::vector<std::string> lines;
  bool moved = false;
  for (const auto& [number, row] : before.rows) {
    const auto other = same.find(number);
    if (other == same.end()) {
      lines.push_back("- " + labelOf(row));
      continue;
    }
    known.insert(other->second);
    const FieldRow& stored = now.rows.at(other->second);
    moved = moved || row[places().order] != stored[places().order];
    if (const std::string changes = changesOf(row, stored); !changes.empty())
      lines.push_back("* " + labelOf(row) + " : " + changes);
  }
  for (const auto& [number, row] : now.rows)
    if (!known.contains(number)) lines.push_back("+ " + labelOf(row));
  if (lines.empty() && moved) lines.emplace_back("* 並び順");
  return lines;
}

std::vector<std::string> rebase(Spread& grid, const LoadedRows& before, const LoadedRows& now,
                                std::string_view tableId) {
  const std::unordered_map<long, long> same = sameFields(before, now);
  std::map<std::string, long> unclaimed;
  for (const auto& [number, row] : now.rows) unclaimed.emplace(toLower(cellOf(row, places().fieldName)), number);
  for (const auto& [number, other] : same) unclaimed.erase(toLower(cellOf(now.rows.at(other), places().fieldName)));
  unclaimed.erase("");

  std::vector<std::string> gone;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const long number = grid.rowTag(row);
    const auto former = before.rows.find(number);
    const auto other = same.find(number);
    if (number != 0 && other != same.end()) {
      grid.setRowTag(row, other->second);
      if (!takesStoredKey(grid, row, former->second, now.rows.at(other->second)))
        followOwnKey(grid, row, tableId, same);
      continue;
    }
    followOwnKey(grid, row, tableId, same);
    if (former != before.rows.end()) gone.push_back(labelOf(former->second));
    grid.setRowTag(row, 0);
    const auto twin = unclaimed.find(toLower(trim(grid.text(col::kFieldName, row))));
    if (twin == unclaimed.end()) continue;
    grid.setRowTag(row, twin->second);
    unclaimed.erase(twin);
  }
  return gone;
}

std::string loadedRowsText(const LoadedRows& rows) {
  std::string text = std::string(kRowsForm) + "\n";
  for (const std::string& column : loadedColumns()) text.append(column).append("\t");
  text += "\n";
  for (const auto& [number, row] : rows.rows) {
    text += std::to_string(number);
    for (const Value& value : row) {
      text += '\t';
      appendValue(text, value);
    }
    text += "\n";
  }
  return text.append(kRowsEnd).append("\n");
}

std::optional<LoadedRows> parseLoadedRows(std::string_view text) {
  const std::vector<std::string_view> lines = splitLines(text);
  if (lines.size() < 3 || lines.front() != kRowsForm || lines.back() != kRowsEnd) return std::nullopt;
  std::string head;
  for (const std::string& column : loadedColumns()) head.append(column).append("\t");
  if (lines[1] != head) return std::nullopt;
  LoadedRows rows{.known = true};
  for (std::size_t at = 2; at + 1 < lines.size(); ++at) {
    std::string_view line = lines[at];
    const auto cell = [&] {
      const std::size_t tab = std::min(line.find('\t'), line.size());
      const std::string_view found = line.substr(0, tab);
      line.remove_prefix(std::min(tab + 1, line.size()));
      return found;
    };
    FieldRow& row = rows.rows[static_cast<long>(gVal(cell()))];
    for (std::size_t place = 0; place < loadedColumns().size(); ++place) {
      const std::optional<Value> value = parseValue(cell());
      if (!value) return std::nullopt;
      row.push_back(*value);
    }
  }
  return rows;
}

}  // namespace quillmarden
