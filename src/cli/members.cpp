#include "cli/members.h"

#include "cli/generate.h"
#include "excel/member_book.h"

namespace quillmarden {

ExitStatus runMembers(Run& run) {
  frmTBList list;
  if (!chooseTables(run, list)) return kFailed;
  BookRun books;
  books.outputFile = run.options.output;
  return printFile(run, pPutMemberExcel(run.session, run.host, books, list, false));
}

}  // namespace quillmarden
