#include "cli/commands.h"

#include "cli/alter.h"
#include "cli/capacity.h"
#include "cli/er.h"
#include "cli/format_file.h"
#include "cli/init.h"
#include "cli/layout.h"
#include "cli/list.h"
#include "cli/login.h"
#include "cli/mail.h"
#include "cli/members.h"
#include "cli/memo.h"
#include "cli/placements.h"
#include "cli/report.h"
#include "cli/save.h"
#include "cli/show.h"
#include "cli/snippet.h"
#include "cli/sql.h"
#include "cli/system.h"
#include "cli/systems.h"
#include "cli/table.h"
#include "cli/tables.h"
#include "cli/users.h"
#include "cli/value_list.h"
#include "cli/view.h"

namespace quillmarden {

const std::vector<const Command*>& commands() {
  static const std::vector<const Command*> all = {
      &kInitCommand,     &kLoginCommand, &kUsersCommand,   &kPlacementsCommand, &kSystemsCommand,   &kSystemCommand,
      &kTablesCommand,   &kTableCommand, &kShowCommand,    &kSaveCommand,       &kValueListCommand, &kMemoCommand,
      &kCapacityCommand, &kSqlCommand,   &kAlterCommand,   &kSnippetCommand,    &kViewCommand,      &kLayoutCommand,
      &kErCommand,       &kListCommand,  &kMembersCommand, &kMailCommand,       &kReportCommand,    &kFormatFileCommand,
  };
  return all;
}

const char* groupHeading(CommandGroup group) {
  switch (group) {
    case CommandGroup::Repository:
      return "リポジトリ";
    case CommandGroup::Systems:
      return "システム";
    case CommandGroup::Tables:
      return "定義";
    case CommandGroup::Scripts:
      return "SQL文・コード";
    case CommandGroup::Workbooks:
      break;
  }
  return "ブック・レポート";
}

}  // namespace quillmarden
