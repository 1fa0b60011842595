#include "excel/format_buttons.h"

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "excel/format_file.h"
#include "repository/frm_system_inf.h"

namespace quillmarden {
namespace {

void say(Host& host, std::string_view text) { gMsgBox(host, text, kOkOnly | kStopIcon); }

/// The template's name as a save would keep it, "" after the message that there is none.
std::string_view givenName(Host& host, const frmSystemInf& screen) {
  const std::string_view name = trim(screen.TxtLayoutFile.text);
  if (name.empty()) say(host, "書式ファイル名が未設定です.");
  return name;
}

}  // namespace

void CmdLayoutInfo_Click(Session& session, Host& host, const frmSystemInf& screen) {
  if (const std::string_view name = givenName(host, screen); !name.empty())
    gPutLayoutFormatDefault(session, host, name);
}

void CmdLayoutCheck_Click(Session& session, Host& host, const frmSystemInf& screen) {
  const std::string_view name = givenName(host, screen);
  if (name.empty()) return;
  if (!gFileExists(host, templatePath(host.machine, name).string(), false)) {
    say(host, joinLines({"指定の書式ファイル名が", " " + host.machine.programFolder.string(), "に存在しません."}));
    return;
  }
  LayoutFormat format;
  std::string faults;
  const bool faulty = gGetLayoutFormat(session, host, name, format, faults, true) != 0;
  say(host, faulty ? faults : "書式ファイルに定義エラーはありませんでした.");
}

}  // namespace quillmarden
