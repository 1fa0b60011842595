#include <algorithm>
#include <optional>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "repository/frm_system_inf.h"

namespace quillmarden {
namespace {

constexpr std::size_t kLongestLayoutFile = 50;
constexpr double kBeyondEveryNumber = 1e15;

/// What is wrong on the screen, and where.
struct InputFault {
  std::string text;
  std::string_view control;
};

bool isBlank(const TextBox& box) { return trim(box.text).empty(); }

std::optional<InputFault> basicFault(Session& session, const frmSystemInf& screen) {
  if (isBlank(screen.TxtSystemName)) return InputFault{"システム名が未設定です.", "TxtSystemName"};
  if (isBlank(screen.TxtMemo)) return InputFault{"概要が未設定です.", "TxtMemo"};
  if (trim(screen.CmbDBType.text).empty()) return InputFault{"デフォルトデータベースが未設定です.", "CmbDBType"};
  if (gChkSystemName2Exists(session, trim(screen.TxtSystemName.text), screen.record.id))
    return InputFault{"入力されたシステム名は既に存在ます.", "TxtSystemName"};
  return std::nullopt;
}

std::optional<InputFault> connectionFault(const frmSystemInf& screen) {
  if (screen.ChkDataBase.value) {
    if (isBlank(screen.TxtDataSource)) return InputFault{"ODBCデータソース名が未設定です.", "TxtDataSource"};
    if (isBlank(screen.txtUserName)) return InputFault{"ユーザー名が未設定です.", "txtUserName"};
  }
  if (equalsNoCase(screen.CmbDBType.text, "MySQL") && isBlank(screen.TxtTableSpace))
    return InputFault{"DataBase名が未設定です.", "TxtTableSpace"};
  return std::nullopt;
}

std::optional<InputFault> layoutFault(const Session& session, Host& host, const frmSystemInf& screen) {
  const std::string_view name = trim(screen.TxtLayoutFile.text);
  if (name.empty()) return std::nullopt;
  if (gLenB(name) > kLongestLayoutFile) return InputFault{"ファイル名が長すぎます.", "TxtLayoutFile"};
  const std::string book = templatePath(host.machine, name).string();
  if (!gFileExists(host, book, false))
    return InputFault{joinLines({"書式ファイルが存在しません.", book, "に複写して下さい."}), "TxtLayoutFile"};
  if (!gFileExists(host, gPathJoin(session.gDataFolder, std::string(name) + ".inf"), false))
    return InputFault{joinLines({"出力ルールが存在しません.", "出力ルールを作成してください."}), "TxtLayoutFile"};
  return std::nullopt;
}

/// Tells a failed look-up or write; always false.
bool tellFailure(Session& session, Host& host, const EngineError& error) {
  session.log.putError(host, "frmSystemInf", error.number(), error.what());
  gMsgBox(host, joinLines({"更新エラー", std::to_string(error.number()), error.what()}), kOkOnly | kStopIcon);
  return false;
}

std::int64_t flagValue(bool on) { return on ? -1 : 0; }

/// A number that no column takes stays one, so that the engine refuses it.
std::int64_t blockSizeOf(const frmSystemInf& screen) {
  const double typed = gStr2Double(screen.TxtBlockSize.text);
  return static_cast<std::int64_t>(std::clamp(typed, -kBeyondEveryNumber, kBeyondEveryNumber));
}

std::int64_t userLimitOf(const frmSystemInf& screen) {
  const auto texts = userLimitTexts();
  const auto found = std::find(texts.begin(), texts.end(), screen.CmbEdit.text);
  return found == texts.end() ? 0 : found - texts.begin();
}

void writeRow(Session& session, Host& host, const frmSystemInf& screen) {
  Recordset row = session.gDB->openTable("MAS_SYSTEM");
  // An older file may lack any of the later columns.
  const auto set = [&](std::string_view column, Value value) {
    if (row.fieldIndex(column) >= 0) row.set(column, std::move(value));
  };
  const std::string now = formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss");
  const std::string name(trim(screen.TxtSystemName.text));
  if (row.seek({name})) {
    row.edit();
  } else {
    row.addNew();
    set("システム名", name);
    set("作成年月日", now);
    set("作成者", session.gLoginUser);
    set("make_server", host.machine.computerName);
  }
  for (const SystemTextColumn& column : systemTextColumns()) {
    const std::string& text = (screen.*column.control).text;
    const bool asTyped = column.column == "概要" || column.column == "password";
    set(column.column, asTyped ? text : std::string(trim(text)));
  }
  for (const SystemFlagColumn& column : systemFlagColumns())
    set(column.column, flagValue((screen.*column.control).value));
  set("修正許可", flagValue(!screen.ChkChangeData.value));
  set("ユーザー制限", userLimitOf(screen));
  // What names a live database in another tool's words stays as long as it says the same.
  if (screen.record.connectDb.empty() || screen.ChkDataBase.value != definesDatabase(screen.record))
    set("connectdatabsse", std::string(screen.ChkDataBase.value ? "1" : "0"));
  set("databasetype", std::string(trim(screen.CmbDBType.text)));
  set("DB_BLOCK_SIZE", blockSizeOf(screen));
  set("更新年月日", now);
  set("更新者", session.gLoginUser);
  set("COMPNAME", host.machine.computerName);
  row.update();
}

}  // namespace

bool checkSystemInf(Session& session, Host& host, frmSystemInf& screen) {
  std::optional<InputFault> fault = basicFault(session, screen);
  if (!fault) fault = connectionFault(screen);
  if (!fault) fault = layoutFault(session, host, screen);
  if (!fault) return true;
  gMsgBox(host, fault->text, kOkOnly | kWarningIcon, "入力確認");
  screen.focus = fault->control;
  // A box can't take the focus while its panel is closed.
  if (fault->control == "TxtTableSpace" && !screen.FraDBSetting.visible) CmdOracleSetting_Click(session, host, screen);
  return false;
}

bool cmdOK_Click(Session& session, Host& host, frmSystemInf& screen) {
  if (refused(host, mayChangeRecord(session, screen))) return false;
  try {
    if (!checkSystemInf(session, host, screen)) return false;
    if (screen.ChkNoPut.value)
      gMsgBox(
          host,
          joinLines({"テーブルリストで表示しない", "にチェックがされています.", "このチェックをするとこのシステムに",
                     "ついて内容の表示/修正ができなくなります.", "詳しくはヘルプを参照してください."}),
          kOkOnly | kWarningIcon);
    if (gMsgBox(host, "登録内容を更新します.", kYesNo | kQuestionIcon) != kYes) return false;
    writeRow(session, host, screen);
  } catch (const EngineError& error) {
    return tellFailure(session, host, error);
  }
  screen.made = screen.record.id == 0;
  gMDB_GetSystemInfo(session, host, trim(screen.TxtSystemName.text), screen.record);
  screen.unloaded = true;
  return true;
}

}  // namespace quillmarden
