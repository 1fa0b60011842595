#include <algorithm>

#include "shell/menu_map.h"

namespace quillmarden {

const std::vector<LaterScreen>& laterScreens() {
  static const std::vector<LaterScreen> kLater = {
      {"frmTBList", "mnuForeign", "foreign keys: editor and automatic generation"},
      {"frmTBList", "mnuDomain", "domain maintenance"},
      {"frmTBList", "mnuCommTb", "tables used from other Systems"},
      {"frmTBList", "mnuCreateIndex", "index manager"},
      {"frmTBList", "mnuReference", "reference analysis"},
      {"frmTBList", "mnuFind", "item search"},
      {"frmTBList", "mnuReverseRep", "difference report"},
      {"frmTBList", "mnuConvAccess2SQLServer", "System copy and conversion"},
      {"frmTBList", "mnuConvPostgreSQL2Oracle", "System copy and conversion"},
      {"frmTBList", "mnuCreateAccess", "Access realisation"},
      {"frmSystemInf", "cmdConvAccessSQLServer", "System copy and conversion"},
      {"frmTBDetail", "mnuDomainRef", "domain maintenance"},
      {"frmTBDetail", "mnuReplace", "replacement in the field grid"},
  };
  return kLater;
}

bool isLater(std::string_view screen, std::string_view name) {
  const auto& later = laterScreens();
  return std::any_of(later.begin(), later.end(),
                     [&](const LaterScreen& one) { return one.screen == screen && one.entry == name; });
}

}  // namespace quillmarden
