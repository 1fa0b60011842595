#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "editing/frm_tb_info.h"
#include "engine/sql_text.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

void putRefFile(Session& session, frmTBInfo& screen, const std::string& name) {
  session.gDB->execute("UPDATE MAS_TABLEINFO  SET  reffile = " + sqlText(name) +
                       "  WHERE ID = " + screen.lblID.caption);
  screen.TxtRefFileName.text = name;
}

/// Tells a failure with the text or number that ends its message.
void tellFailure(Session& session, Host& host, std::string_view routine, const EngineError& error,
                 const std::string& text, const std::string& reason) {
  session.log.putError(host, routine, error.number(), error.what());
  gMsgBox(host, text + "\n " + reason);
}

bool excluded(std::string_view extension) {
  constexpr std::string_view kExcluded[] = {"exe", "bat", "dll", "mdb"};
  const std::string narrow = toLower(toNarrow(extension));
  return std::find(std::begin(kExcluded), std::end(kExcluded), narrow) != std::end(kExcluded);
}

/// What speaks against a drop, "" when nothing does.
std::string faultOf(const frmTBInfo& screen, const std::vector<std::string>& files) {
  if (files.size() != 1) return "複数ファイル選択は処理できません.";
  if (screen.lblID.caption.empty()) return "テーブル情報を保存してからのみ設定できます.";
  const fs::path file = toPath(files.front());
  std::string extension = file.extension().string();
  if (extension.starts_with('.')) extension.erase(0, 1);
  if (!excluded(extension)) return "";
  return joinLines({"ファイルの拡張子は対象外です.", " File : " + file.filename().string(), extension});
}

/// Copies into the folder of the reference files; another file of that name is asked about. "" or why it stopped.
std::string copyRefFile(const Session& session, Host& host, const fs::path& file) {
  const fs::path target = toPath(gPathJoin(gGetRefFileFolder(session), file.filename().string()));
  bool overwrite = false;
  std::error_code ignored;
  if (fs::exists(target, ignored) && !fs::equivalent(file, target, ignored))
    overwrite = gMsgBox(host, "複写先に同じファイルが存在します. 上書きしますか?\n " + target.filename().string(),
                        kYesNo | kQuestionIcon | kDefaultSecond, "確認") == kYes;
  // The very file in the folder was dropped: it is there.
  if (fs::equivalent(file, target, ignored)) return "";
  std::string reason;
  gFileCopy(file.string(), target.string(), overwrite, &reason);
  return reason;
}

std::string memoText(Host& host, const frmTBInfo& screen, int id) {
  return fmt::format(
      "\r\n-- SYSTEM : {}\r\n-- TABLE  : {:05} : {}\r\n-- CLASS  : {}\r\n-- DB     : {}\r\n-- CREATE : {}\r\n\r\n",
      screen.lblSystemName.caption, id, trim(screen.TxtJPN.text), screen.CmbBunrui.text, screen.CmbFileType.text,
      formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss"));
}

}  // namespace

std::string gGetRefFileFolder(const Session& session) {
  const std::string folder =
      gPathJoin(gPathJoin(session.gDbFolder, "RefFiles"), toPath(session.gDbFileName).stem().string());
  gMakeFolder(folder);
  return folder;
}

void openRefFile(Session& session, Host& host, std::string_view name) {
  if (trim(name).empty()) return;
  const std::string file = gPathJoin(gGetRefFileFolder(session), name);
  if (!gFileExists(host, file, false)) {
    gMsgBox(host, "指定の参照ファイルが存在しない");
    return;
  }
  if (host.opener.openFile) host.opener.openFile(toPath(file));
}

void TxtRefFileName_Drop(Session& session, Host& host, frmTBInfo& screen, const std::vector<std::string>& files) {
  if (files.empty()) return;
  if (const std::string fault = faultOf(screen, files); !fault.empty()) {
    gMsgBox(host, fault);
    return;
  }
  if (refused(host, mayChangeTable(session, screen.lblID.caption))) return;
  if (gMsgBox(host, "参照ファイルを、MDBフォルダ配下に複写します.", kYesNo | kQuestionIcon, "確認") != kYes) return;
  const fs::path file = toPath(files.front());
  if (const std::string reason = copyRefFile(session, host, file); !reason.empty()) {
    gMsgBox(host, reason);
    return;
  }
  try {
    putRefFile(session, screen, file.filename().string());
  } catch (const EngineError& error) {
    tellFailure(session, host, "TxtRefFileName_Drop", error, "参照ファイルの更新に失敗しました.", error.what());
  }
}

void cmdRefFileOpen_Click(Session& session, Host& host, frmTBInfo& screen) {
  openRefFile(session, host, screen.TxtRefFileName.text);
}

void cmdClearRefFile_Click(Session& session, Host& host, frmTBInfo& screen) {
  const std::string name(trim(screen.TxtRefFileName.text));
  if (name.empty() || screen.lblID.caption.empty() || refused(host, mayChangeTable(session, screen.lblID.caption)))
    return;
  try {
    const Recordset others =
        session.gDB->openRecordset("SELECT  COUNT(a.ID) as CNT From MAS_TABLEINFO as a WHERE a.ID <> " +
                                   screen.lblID.caption + " AND a.reffile = " + sqlText(name));
    if (!others.eof() && others.integer(0) > 0) gMsgBox(host, "ファイルは削除しないので、手動で処理してください.");
    putRefFile(session, screen, "");
  } catch (const EngineError& error) {
    tellFailure(session, host, "cmdClearRefFile", error, "参照ファイル削除に失敗しました.", error.what());
  }
}

void cmdFileMemo_Click(Session& session, Host& host, frmTBInfo& screen) {
  if (screen.lblID.caption.empty()) {
    gMsgBox(host, "登録後、利用できます.");
    return;
  }
  try {
    const int id = static_cast<int>(gVal(screen.lblID.caption));
    const std::string name = fmt::format("{:05}_MemoFile.txt", id);
    const fs::path file = toPath(gPathJoin(gGetRefFileFolder(session), name));
    std::error_code ignored;
    // A memo that is there may be read by anybody.
    const bool isNew = !fs::exists(file, ignored);
    const bool unset = trim(screen.TxtRefFileName.text).empty();
    const Right right = mayChangeTable(session, screen.lblID.caption);
    if (isNew && refused(host, right)) return;
    if (isNew && !replaceFile(file, encodeText(memoText(host, screen, id))))
      throw EngineError(engine_error::kDiskOrNetwork, file.string());
    if (unset && right) putRefFile(session, screen, name);
    if (host.opener.openFile) host.opener.openFile(file);
  } catch (const EngineError& error) {
    tellFailure(session, host, "cmdFileMemo", error, "メモファイルの処理に失敗しました.",
                std::to_string(error.number()));
  }
}

}  // namespace quillmarden
