#include "cli/system.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/console_session.h"
#include "cli/settings.h"
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

std::string takeUserLimit(frmSystemInf& screen, const std::string& value) {
  const auto texts = userLimitTexts();
  const double place = gVal(value);
  if (!isNumeric(value) || (place != 0 && place != 1 && place != 2))
    return fmt::format("{}", fmt::join(texts, ", ")) + " の番号を指定して下さい.";
  screen.CmbEdit.text = texts[static_cast<std::size_t>(place)];
  return "";
}

/// A flag; of the letter cases the latest one counts, as on the screen.
SettableColumn systemFlag(Run& run, frmSystemInf& screen, const SystemFlagColumn& column) {
  SettableColumn flag = flagColumn(std::string(column.column), screen.*column.control);
  return {flag.name, [&run, &screen, control = column.control, take = flag.take](const std::string& value) {
            std::string fault = take(value);
            if (control == &frmSystemInf::ChkFieldNameLcase) ChkFieldNameLcase_Click(run.session, run.host, screen);
            if (control == &frmSystemInf::ChkFieldNameUcase) ChkFieldNameUcase_Click(run.session, run.host, screen);
            if (control == &frmSystemInf::ChkFieldNameAsTyped) ChkFieldNameAsTyped_Click(run.session, run.host, screen);
            return fault;
          }};
}

/// The name, which only a System that exists can change.
std::string takeName(frmSystemInf& screen, const std::string& value) {
  if (screen.record.id == 0) return "新しいシステムの名前は、--system で指定して下さい.";
  screen.TxtSystemNameNew.text = value;
  return "";
}

/// All columns that the screen edits.
std::vector<SettableColumn> systemColumns(Run& run, frmSystemInf& screen) {
  std::vector<SettableColumn> all = {
      {std::string(kName), [&screen](const std::string& value) { return takeName(screen, value); }}};
  for (const SystemTextColumn& column : systemTextColumns())
    all.push_back(textColumn(std::string(column.column), screen.*column.control));
  for (const SystemFlagColumn& column : systemFlagColumns()) all.push_back(systemFlag(run, screen, column));
  all.push_back(flagColumn("修正許可", screen.ChkChangeData, true));
  all.push_back(flagColumn("connectdatabsse", screen.ChkDataBase));
  all.push_back(entryColumn("databasetype", screen.CmbDBType,
                            [&run, &screen] { CmbDBType_Click(run.session, run.host, screen); }));
  all.push_back({"ユーザー制限", [&screen](const std::string& value) { return takeUserLimit(screen, value); }});
  all.push_back(digitsColumn("DB_BLOCK_SIZE", screen.TxtBlockSize));
  return all;
}

void putSystem(Run& run, std::string_view system) {
  putRecord(run.output, run.session.gDB->openRecordset("SELECT * FROM MAS_SYSTEM WHERE システム名 = paraSystem",
                                                       {{"paraSystem", std::string(system)}}));
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
    if (!takeSettings(run, "MAS_SYSTEM", systemColumns(run, screen), sets)) return kFailed;
    const bool renames =
        std::any_of(sets.begin(), sets.end(), [](const std::string& setting) { return settingName(setting) == kName; });
    // A name that can't be given must not leave the other columns changed.
    if (renames && !checkNewSystemName(run.session, run.host, screen)) return kFailed;
    const bool saves = options.isNew || !renames || sets.size() > 1;
    if (saves && !cmdOK_Click(run.session, run.host, screen)) return kFailed;
    Windows windows;
    if (renames && !cmdChange_Click(run.session, run.host, windows, screen)) return kFailed;
  }
  putSystem(run, screen.record.name);
  return kDone;
}

}  // namespace

constinit const Command kSystemCommand{
    .name = "system",
    .group = CommandGroup::Systems,
    .help = "システムの情報を表示する。1行に、列名、タブ、値。--set で列を変更して保存する",
    .prepare = prepareCommand<SystemOptions, addSystemOptions, runSystem>};

}  // namespace quillmarden
