#include "cli/system.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "cli/console_session.h"
#include "common/numbers.h"
#include "common/text.h"
#include "repository/frm_system_inf.h"

namespace quillmarden {

namespace {

struct SystemOptions {
  std::string system;
  bool isNew = false;
  std::vector<std::string> sets;
};

void addSystemOptions(OptionSet& set, SystemOptions& options) {
  addSystem(set, options.system);
  set.flag("--new", options.isNew, "--system の名前で、新しいシステムを登録する");
  addSettings(set, options.sets, "変更する列と値。複数回指定できる。システム名は名称変更になる");
}

constexpr std::string_view kName = "システム名";

/// Takes a value into the screen; gives what is wrong with it, "" for nothing.
using Taker = std::function<std::string(Run& run, frmSystemInf& screen, const std::string& value)>;

struct Column {
  std::string_view name;
  Taker take;
};

std::string takeFlag(CheckBox& box, std::string_view value, bool inverted = false) {
  if (value != "0" && value != "-1" && value != "1") return "0 か -1 を指定して下さい.";
  box.value = (value != "0") != inverted;
  return "";
}

std::string takeKind(Run& run, frmSystemInf& screen, const std::string& value) {
  const auto& kinds = screen.CmbDBType.entries;
  const auto found = std::find_if(kinds.begin(), kinds.end(), [&](const std::string& kind) {
    return !trim(kind).empty() && equalsNoCase(kind, trim(value));
  });
  if (found == kinds.end()) {
    std::string list;
    for (const std::string& kind : kinds)
      if (!trim(kind).empty()) list += (list.empty() ? "" : ", ") + kind;
    return list + " のいずれかを指定して下さい.";
  }
  screen.CmbDBType.text = *found;
  CmbDBType_Click(run.session, run.host, screen);
  return "";
}

std::string takeUserLimit(Run&, frmSystemInf& screen, const std::string& value) {
  const auto texts = userLimitTexts();
  const double place = gVal(value);
  if (!isNumeric(value) || (place != 0 && place != 1 && place != 2))
    return fmt::format("{}", fmt::join(texts, ", ")) + " の番号を指定して下さい.";
  screen.CmbEdit.text = texts[static_cast<std::size_t>(place)];
  return "";
}

std::string takeBlockSize(Run&, frmSystemInf& screen, const std::string& value) {
  const std::string digits(trim(value));
  if (digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos)
    return "9桁以内の数字で指定して下さい.";
  screen.TxtBlockSize.text = digits;
  return "";
}

/// All columns that the screen edits, but for the name.
std::vector<Column> columns() {
  std::vector<Column> all;
  for (const SystemTextColumn& column : systemTextColumns())
    all.push_back({column.column, [control = column.control](Run&, frmSystemInf& screen, const std::string& value) {
                     (screen.*control).text = value;
                     return std::string();
                   }});
  for (const SystemFlagColumn& column : systemFlagColumns())
    all.push_back({column.column, [control = column.control](Run& run, frmSystemInf& screen, const std::string& value) {
                     std::string fault = takeFlag(screen.*control, value);
                     // The latest of the letter cases counts, as on the screen.
                     if (control == &frmSystemInf::ChkFieldNameLcase)
                       ChkFieldNameLcase_Click(run.session, run.host, screen);
                     if (control == &frmSystemInf::ChkFieldNameUcase)
                       ChkFieldNameUcase_Click(run.session, run.host, screen);
                     if (control == &frmSystemInf::ChkFieldNameAsTyped)
                       ChkFieldNameAsTyped_Click(run.session, run.host, screen);
                     return fault;
                   }});
  all.push_back({"修正許可", [](Run&, frmSystemInf& screen, const std::string& value) {
                   return takeFlag(screen.ChkChangeData, value, true);
                 }});
  all.push_back({"connectdatabsse", [](Run&, frmSystemInf& screen, const std::string& value) {
                   return takeFlag(screen.ChkDataBase, value);
                 }});
  all.push_back({"databasetype", takeKind});
  all.push_back({"ユーザー制限", takeUserLimit});
  all.push_back({"DB_BLOCK_SIZE", takeBlockSize});
  return all;
}

std::string faultText(std::string_view what, const std::string& setting, std::string_view how) {
  return fmt::format("{}\n --set {}\n {}", what, setting, how);
}

/// Takes one NAME=VALUE into the screen. False after a message.
bool takeSetting(Run& run, frmSystemInf& screen, const std::string& setting) {
  const auto sign = setting.find('=');
  const std::string_view name = trim(std::string_view(setting).substr(0, sign));
  const std::string value = setting.substr(sign + 1);
  if (name == kName) {
    if (screen.record.id != 0) {
      screen.TxtSystemNameNew.text = value;
      return true;
    }
    return failure(run, faultText("新しいシステムの名前は、--system で指定して下さい.", setting, "")) == kDone;
  }
  const std::vector<Column> known = columns();
  const auto column = std::find_if(known.begin(), known.end(),
                                   [&](const Column& candidate) { return equalsNoCase(candidate.name, name); });
  if (column == known.end()) {
    const TableDef* table = run.session.gDB->tableDef("MAS_SYSTEM");
    const bool exists = table != nullptr && table->field(name) != nullptr;
    std::string list(kName);
    for (const Column& candidate : known) list.append(", ").append(candidate.name);
    return failure(run, faultText(exists ? "この列は変更できません." : "指定の列が存在しません.", setting,
                                  "変更できる列 : " + list)) == kDone;
  }
  const std::string fault = column->take(run, screen, value);
  return fault.empty() || failure(run, faultText("値が不正です.", setting, fault)) == kDone;
}

void putRecord(Run& run, std::string_view system) {
  Recordset row = run.session.gDB->openRecordset("SELECT * FROM MAS_SYSTEM WHERE システム名 = paraSystem",
                                                 {{"paraSystem", std::string(system)}});
  for (int i = 0; !row.eof() && i < row.fieldCount(); ++i) {
    run.output += row.fieldName(i) + '\t';
    putCell(run.output, row.text(i));
    run.output += '\n';
  }
}

/// The screen of the System that the options name, a new one with --new. False after a message.
bool openSystem(Run& run, const SystemOptions& options, frmSystemInf& screen) {
  if (options.system == kAllSystems || options.system == kNewSystem)
    return failure(run, "システムを選択して下さい.") == kDone;
  if (options.isNew) {
    frmSystemInf_Load(run.session, run.host, screen, "");
    screen.TxtSystemName.text = options.system;
    return true;
  }
  return enterSystem(run, options.system) && frmSystemInf_Load(run.session, run.host, screen, options.system);
}

ExitStatus runSystem(Run& run, const SystemOptions& options) {
  frmSystemInf screen;
  if (!openSystem(run, options, screen)) return kFailed;
  const auto& sets = options.sets;
  if (options.isNew || !sets.empty()) {
    if (const Right right = mayChangeRecord(run.session, screen); !right) return failure(run, right.reason);
    for (const std::string& setting : sets)
      if (!takeSetting(run, screen, setting)) return kFailed;
    const bool renames = std::any_of(sets.begin(), sets.end(), [](const std::string& setting) {
      return trim(std::string_view(setting).substr(0, setting.find('='))) == kName;
    });
    // A name that can't be given must not leave the other columns changed.
    if (renames && !checkNewSystemName(run.session, run.host, screen)) return kFailed;
    const bool saves = options.isNew || !renames || sets.size() > 1;
    if (saves && !cmdOK_Click(run.session, run.host, screen)) return kFailed;
    Windows windows;
    if (renames && !cmdChange_Click(run.session, run.host, windows, screen)) return kFailed;
  }
  putRecord(run, screen.record.name);
  return kDone;
}

}  // namespace

constinit const Command kSystemCommand{
    .name = "system",
    .group = CommandGroup::Systems,
    .help = "システムの情報を表示する。1行に、列名、タブ、値。--set で列を変更して保存する",
    .prepare = prepareCommand<SystemOptions, addSystemOptions, runSystem>};

}  // namespace quillmarden
