#include "repository/session.h"

#include "common/paths.h"

namespace quillmarden {

void openUserData(Session& session, Host& host) {
  session.gDataFolder = gGetDataFolder(host.machine);
  session.gInfoFolder = gPathJoin(session.gDataFolder, "vrnokInfo");
  session.gIniFile = gPathJoin(session.gInfoFolder, "tableinf.ini");
  gMakeFolder(session.gInfoFolder);
  session.ini.emplace(toPath(session.gIniFile));
  session.settings = readAppSettings(*session.ini);
  session.gReferenceDataBase = session.settings.referenceDataBase ? 1 : 0;
}

}  // namespace quillmarden
