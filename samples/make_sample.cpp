// Makes the sample Repository from the texts beside this file, through the routines that the screens use.

#include <fmt/format.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "editing/frm_tb_detail.h"
#include "operations/capacity.h"
#include "repository/schema.h"
#include "repository/session.h"
#include "sample_source.h"

namespace quillmarden {
namespace {

/// The moment at which the sample is made, the same in every run.
constexpr DateTime kMoment{2026, 11, 24, 9, 0, 0};
constexpr const char* kUser = "admin";

using Row = std::map<std::string, std::string>;

/// A folder for the session's own files, gone with the run.
class WorkFolder {
 public:
  WorkFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillmarden_sample_XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder: " + pattern);
    path_ = pattern;
  }
  ~WorkFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// A host that says yes and remembers the last text, which tells why a routine failed.
Host quietHost(const std::filesystem::path& folder, std::string& lastMessage) {
  Host host;
  host.dialogs.message = [&lastMessage](std::string_view text, int style, std::string_view) {
    lastMessage = text;
    return (style & 7) == kYesNo ? static_cast<int>(kYes) : static_cast<int>(kOk);
  };
  host.dialogs.waitText = [](std::string_view) {};
  host.dialogs.progress = [](long, long) {};
  host.dialogs.stopRequested = [] { return false; };
  host.dialogs.yield = [] {};
  host.clock.now = [] { return kMoment; };
  host.machine = {"SAMPLE", folder, folder, folder, [](std::string_view) {}, [] { return std::string(); }};
  auto leaveClosed = [](const std::filesystem::path&) { return true; };
  host.opener = {leaveClosed, leaveClosed, leaveClosed};
  return host;
}

/// The texts as installed beside the program, else those it was built from.
std::filesystem::path sampleTexts() {
  const std::filesystem::path installed = assetsFolder("") / "samples";
  std::error_code missing;
  return std::filesystem::is_directory(installed, missing) ? installed : std::filesystem::path(QM_SAMPLES);
}

class SampleMaker {
 public:
  SampleMaker(const std::string& file, const std::filesystem::path& texts)
      : texts_(texts),
        host_(quietHost(work_.path(), lastMessage_)),
        types_(readSheet(texts / "types.txt")),
        domains_(readSheet(texts / "domains.txt")),
        valueLists_(readValueLists(texts / "value_lists.txt")) {
    session_.gDB = std::make_unique<Database>(createRepository(file, readLines(texts / "users.txt")));
    session_.gLoginUser = kUser;
    openUserData(session_, host_);
  }

  void make() {
    std::vector<Row> systems = readSheet(texts_ / "systems.txt").rows;
    addHosts();
    for (const Row& system : systems) makeSystem(system);
    addSharedTables();
  }

 private:
  /// A table of the text with its number in the Repository.
  struct MadeTable {
    const SourceTable* source;
    std::string id;
  };
  struct Type {
    std::string name, whole, fraction;
  };

  void addHosts() {
    for (const char* name : {"会計DB", "基幹DB", "連携サーバー"}) insert("MAS_HOST", {{{"格納先", name}}});
  }

  void makeSystem(const Row& system) {
    kind_ = system.at("databasetype");
    name_ = system.at("システム名");
    Row row = system;
    std::vector<std::string> folders = splitTrimmed(row["フォルダ"], ' ');
    row.erase("フォルダ");
    row["修正許可"] = "-1";
    row["ユーザー制限"] = "0";
    row["出力しない"] = "0";
    insert("MAS_SYSTEM", {audited(row)});

    std::vector<SourceTable> sources;
    for (const std::string& folder : folders)
      for (SourceTable& table : readTables(texts_ / folder))
        if (isMeant(table)) sources.push_back(std::move(table));
    bool real = typeColumn();
    if (real) addDictionary();
    std::vector<MadeTable> tables = addTables(sources);
    if (!selectSystem(session_, host_, name_)) throw std::runtime_error("no System " + name_);
    for (const MadeTable& table : tables) saveFields(table);
    linkFields(tables);
    addIndexes(tables);
    if (recalculateSystem(session_, host_, name_)) throw std::runtime_error(name_ + ": " + lastMessage_);
    std::printf("%s: %zu tables\n", name_.c_str(), tables.size());
  }

  bool isMeant(const SourceTable& table) const {
    auto kinds = table.head.find("対象");
    if (kinds == table.head.end()) return true;
    for (const std::string& kind : splitTrimmed(kinds->second, ','))
      if (kind == kind_) return true;
    return false;
  }

  /// Whether the kind has types of its own in types.txt.
  bool typeColumn() const {
    for (const std::string& column : types_.columns)
      if (column == kind_) return true;
    return false;
  }

  Row audited(Row row) const {
    std::string now = formatDateTime(kMoment, "yyyy/mm/dd hh:nn:ss");
    row["作成年月日"] = row["更新年月日"] = now;
    row["作成者"] = row["更新者"] = kUser;
    return row;
  }

  /// Adds rows of one shape. A column that holds numbers takes the text as a number, blank text as Null.
  void insert(const std::string& table, const std::vector<Row>& rows) {
    if (rows.empty()) return;
    const TableDef* definition = session_.gDB->tableDef(table);
    std::vector<std::string> columns;
    for (const auto& [column, value] : rows.front()) columns.push_back(column);
    std::vector<std::vector<Value>> values;
    for (const Row& row : rows) {
      auto& line = values.emplace_back();
      for (const std::string& column : columns) {
        const FieldDef* field = definition->field(column);
        if (!field) throw std::runtime_error(table + " has no column " + column);
        const std::string& text = row.at(column);
        bool isText =
            field->type == FieldType::Text || field->type == FieldType::Memo || field->type == FieldType::Date;
        if (text.empty())
          line.emplace_back();
        else if (isText)
          line.emplace_back(text);
        else
          line.emplace_back(static_cast<std::int64_t>(gStr2Double(text)));
      }
    }
    session_.gDB->insertRows(table, columns, values);
  }

  Type typeOf(std::string_view logical, const std::string& place) const {
    std::vector<std::string> words = splitTrimmed(logical, ' ');
    words.resize(3);
    for (const Row& row : types_.rows) {
      if (row.at("論理型") != words[0]) continue;
      Type type{row.at(kind_), "", ""};
      // "n" and "s" behind the name take the digits of the logical type, a number stands for itself.
      while (!type.name.empty()) {
        std::size_t blank = type.name.rfind(' ');
        if (blank == std::string::npos) break;
        std::string digits = type.name.substr(blank + 1);
        bool whole = digits == "n" || isNumeric(digits);
        if (!whole && digits != "s") break;
        (digits == "s" ? type.fraction : type.whole) = digits == "n" ? words[1] : digits == "s" ? words[2] : digits;
        type.name.resize(blank);
      }
      return type;
    }
    throw std::runtime_error(fmt::format("{}: no type {} in types.txt", place, logical));
  }

  void addDictionary() {
    std::vector<Row> rows;
    domainTypes_.clear();
    for (const Row& domain : domains_.rows) {
      Type type = typeOf(domain.at("論理型"), domains_.place);
      domainTypes_[domain.at("日本語名")] = {type, domain.at("項目分類")};
      rows.push_back(audited({{"システム名", name_},
                              {"日本語名", domain.at("日本語名")},
                              {"項目名", domain.at("項目名")},
                              {"型", type.name},
                              {"整数桁数", type.whole.empty() ? "0" : type.whole},
                              {"少数桁数", type.fraction.empty() ? "0" : type.fraction},
                              {"項目分類", domain.at("項目分類")},
                              {"備考", domain.at("備考")},
                              {"sortnum", std::to_string(rows.size() + 1)},
                              {"pmark", domain.at("個人情報") == "○" ? "-1" : "0"},
                              {"全システム共通", "0"},
                              {"削除フラグ", "0"}}));
    }
    insert("MAS_DOMAIN", rows);
    domainIds_ = numbersOf("MAS_DOMAIN", "日本語名");

    std::vector<Row> lists;
    std::vector<Row> entries;
    for (const SourceValueList& list : valueLists_) {
      lists.push_back(audited({{"システム名", name_},
                               {"値名称", list.name},
                               {"内容", list.remark},
                               {"型", list.type},
                               {"種別", list.category},
                               {"全システム共通", "0"},
                               {"削除フラグ", "0"}}));
      int number = 0;
      for (const SourceValueList::Entry& entry : list.entries)
        entries.push_back(audited({{"システム名", name_},
                                   {"値名称", list.name},
                                   {"行番号", std::to_string(++number)},
                                   {"値", entry.value},
                                   {"内容", entry.meaning},
                                   {"初期値", entry.preset ? "-1" : "0"}}));
    }
    insert("MAS_DIVISION", lists);
    insert("MAS_DIVISIONDETAILES", entries);
  }

  /// The IDs of the System's rows by one of their columns.
  std::map<std::string, std::string> numbersOf(const std::string& table, const std::string& column) {
    std::map<std::string, std::string> numbers;
    Recordset rows = session_.gDB->openRecordset(
        fmt::format("SELECT a.{}, a.ID FROM {} AS a WHERE a.システム名 = paraSystem", column, table),
        {{"paraSystem", name_}});
    for (; !rows.eof(); rows.moveNext()) numbers.emplace(rows.text(0), rows.text(1));
    return numbers;
  }

  std::vector<MadeTable> addTables(const std::vector<SourceTable>& sources) {
    std::vector<Row> rows;
    for (const SourceTable& source : sources) {
      Row row = {{"データ分類", ""},     {"データ分類2", ""},       {"格納先", ""},
                 {"作成間隔", "適時"},   {"現在数", "0"},           {"想定数", "0"},
                 {"現在保持", "0"},      {"想定保持", "0"},         {"pmark", "0"},
                 {"brinindex", "0"},     {"inttriggerflg", "0"},    {"partition_field", ""},
                 {"ORA_NEXT", ""},       {"ORA_PCTFREE", ""},       {"画面名等", ""},
                 {"データ入力元", ""},   {"レコード更新削除", "0"}, {"進捗状況", "完了"},
                 {"全システム共通", "0"}};
      for (const auto& [column, value] : source.head) row[column] = value;
      row.erase("対象");
      if (kind_ != "PostgreSQL") row["全システム共通"] = "0";
      if (kind_ != "Oracle") row["ORA_NEXT"] = row["ORA_PCTFREE"] = "";
      row["システム名"] = name_;
      row["ファイル種別"] = kind_;
      row["修正許可"] = "-1";
      row["削除フラグ"] = "0";
      row["REVERSE_DB"] = "0";
      row["件数定義ID"] = "0";
      row["COMPNAME"] = row["make_server"] = host_.machine.computerName;
      rows.push_back(audited(row));
    }
    insert("MAS_TABLEINFO", rows);
    std::map<std::string, std::string> ids = numbersOf("MAS_TABLEINFO", "テーブル名");
    std::vector<MadeTable> tables;
    for (const SourceTable& source : sources) tables.push_back({&source, ids.at(source.head.at("テーブル名"))});
    return tables;
  }

  void saveFields(const MadeTable& table) {
    frmTBDetail detail;
    if (pGet_TableID2TableDetails(session_, host_, detail, table.id)) throw std::runtime_error(table.source->file);
    const SourceSheet& sheet = table.source->fields;
    detail.Spread.setMaxRows(0);
    detail.Spread.setMaxRows(static_cast<int>(sheet.rows.size()));
    int row = 0;
    for (const Row& field : sheet.rows) fillRow(detail.Spread, ++row, field, sheet.place);
    detail.changed = true;
    if (CmdUpDate_Click(session_, host_, detail))
      throw std::runtime_error(fmt::format("{}: {}", table.source->file, lastMessage_));
  }

  void fillRow(Spread& grid, int row, const Row& field, const std::string& place) {
    static const std::map<std::string_view, int> columns = {
        {"日本語名", field_col::kJapaneseName},
        {"項目名", field_col::kFieldName},
        {"KEY", field_col::kKey},
        {"型", field_col::kType},
        {"整数桁数", field_col::kWholeDigits},
        {"NULL値", field_col::kNull},
        {"個人情報", field_col::kPmark},
        {"項目分類", field_col::kClass},
        {"値リスト", field_col::kValueList},
        {"備考", field_col::kRemark},
        {"初期値", field_col::kDefault},
        // of program lists, which give the same columns another meaning
        {"分類名", field_col::kValueList},
        {"プログラムID", field_col::kKey},
        {"残工数", field_col::kLength},
        {"予定工数", field_col::kNull},
        {"進捗分類", field_col::kClass},
        {"開始日", field_col::kDefault},
        {"完了日", field_col::kRangeKind},
        {"担当", field_col::kForeign},
    };
    grid.setText(field_col::kChanged, row, std::string(kChangedMark));
    for (const auto& [name, value] : field) {
      if (value.empty() || name == "参照") continue;
      auto column = columns.find(name);
      bool check = column != columns.end() && value == "○";
      if (name == "論理型")
        fillType(grid, row, value, place);
      else if (name == "範囲")
        fillRange(grid, row, value);
      else if (name == "初期値" && value == "現在")
        grid.setText(field_col::kDefault, row, typeOf(value, place).name);
      else if (column != columns.end())
        grid.setText(column->second, row, check ? "-1" : value);
      else
        throw std::runtime_error(fmt::format("{}: unknown column {}", place, name));
    }
  }

  void fillType(Spread& grid, int row, const std::string& logical, const std::string& place) {
    Type type;
    if (logical.starts_with('@')) {
      auto domain = domainTypes_.find(logical.substr(1));
      if (domain == domainTypes_.end()) throw std::runtime_error(fmt::format("{}: no domain {}", place, logical));
      type = domain->second.first;
      grid.setText(field_col::kClass, row, domain->second.second);
      grid.setText(field_col::kDomainName, row, domain->first);
      grid.setText(field_col::kDomainId, row, domainIds_.at(domain->first));
    } else {
      type = typeOf(logical, place);
    }
    grid.setText(field_col::kType, row, type.name);
    grid.setText(field_col::kWholeDigits, row, type.whole.empty() ? "0" : type.whole);
    grid.setText(field_col::kFractionDigits, row, type.fraction.empty() ? "0" : type.fraction);
  }

  static void fillRange(Spread& grid, int row, std::string_view text) {
    std::vector<std::string> words = splitTrimmed(text, ' ');
    words.resize(3);
    grid.setText(field_col::kRangeKind, row, words[0]);
    grid.setText(field_col::kRangeStart, row, words[1]);
    grid.setText(field_col::kRangeEnd, row, words[2]);
  }

  /// The number and the field row of "TABLE.FIELD" among the made tables.
  static std::pair<const MadeTable*, int> fieldNamed(const std::vector<MadeTable>& tables, std::string_view text) {
    std::vector<std::string> names = splitTrimmed(text, '.');
    names.resize(2);
    for (const MadeTable& table : tables) {
      if (table.source->head.at("テーブル名") != names[0]) continue;
      for (std::size_t i = 0; i < table.source->fields.rows.size(); ++i)
        if (table.source->fields.rows[i].at("項目名") == names[1]) return {&table, static_cast<int>(i) + 1};
    }
    throw std::runtime_error(fmt::format("no field {}", text));
  }

  /// Writes the foreign keys into the field rows as the foreign key screen does.
  void linkFields(const std::vector<MadeTable>& tables) {
    for (const MadeTable& table : tables) {
      int row = 0;
      for (const Row& field : table.source->fields.rows) {
        ++row;
        auto target = field.find("参照");
        if (target == field.end() || target->second.empty()) continue;
        auto [referred, referredRow] = fieldNamed(tables, target->second);
        const Row& referredField = referred->source->fields.rows[static_cast<std::size_t>(referredRow - 1)];
        Recordset own = session_.gDB->openRecordset(
            fmt::format(" SELECT a.外部参照, a.外部参照TABLEID, a.外部参照ROWNO,a.外部参照登録方法 "
                        " FROM MAS_TABLEDETAILES AS a  WHERE a.ID = {} And a.ROWNO= {}",
                        table.id, row));
        own.edit();
        own.set("外部参照", referred->source->head.at("日本語名") + ":" + referredField.at("日本語名"));
        own.set("外部参照TABLEID", static_cast<std::int64_t>(gStr2Double(referred->id)));
        own.set("外部参照ROWNO", std::int64_t{referredRow});
        own.set("外部参照登録方法", "手入力");
        own.update();
      }
    }
  }

  void addIndexes(const std::vector<MadeTable>& tables) {
    std::vector<Row> rows;
    for (const MadeTable& table : tables) {
      for (const SourceIndex& index : table.source->indexes) {
        int place = 0;
        for (const std::string& field : index.fields) {
          auto [owner, row] = fieldNamed(tables, table.source->head.at("テーブル名") + "." + field);
          rows.push_back(audited({{"INDEX_NAME", index.name},
                                  {"ID", owner->id},
                                  {"ROWNO", std::to_string(row)},
                                  {"備考", index.remark},
                                  {"順序", std::to_string(++place)},
                                  {"bolUNIQUE", index.unique ? "1" : "0"},
                                  {"brinindex", index.brin ? "1" : "0"}}));
        }
      }
    }
    insert("MAS_INDEX", rows);
  }

  /// The web shop's System uses the departments of the main one.
  void addSharedTables() {
    name_ = "販売管理_PostgreSQL";
    std::string id = numbersOf("MAS_TABLEINFO", "テーブル名").at("BUSHO");
    insert("DAT_TABLEREF", {{{"システム名", "販売管理_MySQL"},
                             {"ID", id},
                             {"全て", "0"},
                             {"検索", "-1"},
                             {"追加", "0"},
                             {"更新", "0"},
                             {"削除", "0"},
                             {"参照", "-1"}}});
  }

  WorkFolder work_;
  std::filesystem::path texts_;
  std::string lastMessage_;
  Host host_;
  Session session_;
  SourceSheet types_;
  SourceSheet domains_;
  std::vector<SourceValueList> valueLists_;
  std::string name_;  ///< of the System in the making
  std::string kind_;
  std::map<std::string, std::pair<Type, std::string>> domainTypes_;  ///< with the 項目分類
  std::map<std::string, std::string> domainIds_;
};

}  // namespace
}  // namespace quillmarden

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fputs("usage: quillmarden-sample FILE [FOLDER]\nMakes the sample Repository from the texts in FOLDER.\n",
               stderr);
    return 2;
  }
  std::filesystem::path file = argv[1];
  if (std::filesystem::exists(file)) {
    std::fprintf(stderr, "%s: exists already\n", file.c_str());
    return 1;
  }
  try {
    quillmarden::SampleMaker(file.string(), argc == 3 ? std::filesystem::path(argv[2]) : quillmarden::sampleTexts())
        .make();
    std::printf("%s\n", file.c_str());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return 1;
  }
}
