#include "editing/detail_navigation.h"

#include <algorithm>

#include "common/paths.h"
#include "common/text.h"
#include "editing/detail_parts.h"

namespace quillmarden {

bool CmdReGet_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (screen.lblID.caption.empty() || keepsEditing(host, screen)) return true;
  const std::string id = screen.lblID.caption;
  return pGet_TableID2TableDetails(session, host, screen, id);
}

bool showNeighbour(Session& session, Host& host, frmTBList& list, frmTBDetail& screen, int step) {
  ListBox& tables = list.LstTable;
  const int former = tables.listIndex;
  const int wanted = former + step;
  if (wanted < 0 || wanted >= tables.count()) return true;
  tables.listIndex = wanted;
  if (pReadTbDetailsData(session, host, list, screen)) {
    tables.listIndex = former;
    return true;
  }
  std::fill(tables.selected.begin(), tables.selected.end(), false);
  tables.selected[static_cast<std::size_t>(wanted)] = true;
  return false;
}

void tableInfoSaved(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId) {
  if (tableId.empty() || screen.lblID.caption != tableId) return;
  const std::string id(tableId);
  if (!screen.changed) {
    pGet_TableID2TableDetails(session, host, screen, id);
    return;
  }
  try {
    refreshRights(session, host, screen);
    pGet_TableID2TableInfo(session, host, screen, id);
    putCaption(screen);
  } catch (const EngineError& error) {
    tellError(session, host, "tableInfoSaved", error);
  }
}

void cmdOpenMDBFolder_Click(Session& session, Host& host) {
  const std::string& file = session.gCurrentSystem.accessFile;
  if (gFileExists(host, file, true)) host.opener.openFolder(toPath(file).parent_path());
}

void lblColRow_Click(Host& host, const frmTBList& list) {
  const std::string connection(trim(list.TxtConnect.text));
  const std::string user(trim(list.TxtUserName.text));
  const std::string password(trim(list.TxtPassword.text));
  if (connection.empty() || user.empty() || password.empty() || !host.opener.startWithArguments) return;
  const std::filesystem::path program = host.machine.programFolder / "Ombrisel.exe";
  if (!gFileExists(host, program.string(), false)) return;
  host.opener.startWithArguments(program, "/C:" + connection + " /U:" + user + " /P:" + password);
}

}  // namespace quillmarden
