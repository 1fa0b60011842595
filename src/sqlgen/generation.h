#pragma once

#include <string>
#include <unordered_map>

#include "editing/frm_tb_detail.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// The value-list check texts that a run has asked for so far, by list name. One cache serves one System.
struct CheckListCache {
  std::unordered_map<std::string, std::string> texts;
};

/// What a generator works with: the table on show, the System, the options. Generators write text and change nothing
/// but the cache.
struct Generation {
  Session& session;
  Host& host;
  const frmTBDetail& table;
  const SystemRecord& system;
  CheckListCache& checkLists;
  bool optionSwitch = true;  ///< on: a clause follows its option. Off: every clause but DROP is written
  bool backup = false;       ///< back-up statements are asked for

  /// Whether a clause with this option is written.
  bool due(bool option) const { return !optionSwitch || option; }
  bool dropDue() const { return optionSwitch && session.settings.createSql2DropSQL; }
};

}  // namespace quillmarden
