#include "cli/members.h"

#include "cli/generate.h"
#include "excel/member_book.h"

namespace quillmarden {

namespace {

struct MembersOptions {
  std::string system;
  std::vector<std::string> tables;
  std::string output;
};

void addMembersOptions(OptionSet& set, MembersOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
  addOutput(set, options.output);
}

ExitStatus runMembers(Run& run, const MembersOptions& options) {
  frmTBList list;
  if (!chooseTables(run, options.system, options.tables, list)) return kFailed;
  BookRun books;
  books.outputFile = options.output;
  return printFile(run, books, pPutMemberExcel(run.session, run.host, books, list, false));
}

}  // namespace

constinit const Command kMembersCommand{.name = "members",
                                        .group = CommandGroup::Workbooks,
                                        .help = "メンバーの一覧のブックを作成し、ファイル名を表示する",
                                        .prepare = prepareCommand<MembersOptions, addMembersOptions, runMembers>};

}  // namespace quillmarden
