#include "cli/mail.h"

#include "cli/generate.h"
#include "common/text.h"
#include "excel/member_book.h"

namespace quillmarden {

ExitStatus runMail(Run& run) {
  frmTBList list;
  if (!chooseTables(run, list)) return kFailed;
  const std::string addresses = mailAddresses(*run.session.gDB, list);
  if (addresses.empty()) return failure(run, "有効なMailアドレスはありませんでした.");
  run.output = gReplaceAll(addresses, "\r\n", "\n") + "\n";
  return kDone;
}

}  // namespace quillmarden
