#include "cli/mail.h"

#include "cli/generate.h"
#include "common/text.h"
#include "excel/member_book.h"

namespace quillmarden {

namespace {

struct MailOptions {
  std::string system;
  std::vector<std::string> tables;
};

void addMailOptions(OptionSet& set, MailOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
}

ExitStatus runMail(Run& run, const MailOptions& options) {
  frmTBList list;
  if (!chooseTables(run, options.system, options.tables, list)) return kFailed;
  const std::string addresses = mailAddresses(*run.session.gDB, list);
  if (addresses.empty()) return failure(run, "有効なMailアドレスはありませんでした.");
  run.output = gReplaceAll(addresses, "\r\n", "\n") + "\n";
  return kDone;
}

}  // namespace

constinit const Command kMailCommand{.name = "mail",
                                     .group = CommandGroup::Workbooks,
                                     .help = "メンバーのメールアドレスを表示する。1行に1テーブル、コンマで区切る",
                                     .prepare = prepareCommand<MailOptions, addMailOptions, runMail>};

}  // namespace quillmarden
