#include "cli/er.h"

#include "cli/generate.h"
#include "excel/er_book.h"

namespace quillmarden {

ExitStatus runEr(Run& run) {
  frmTBList list;
  if (!chooseTables(run, list)) return kFailed;
  BookRun books;
  books.outputFile = run.options.output;
  ErChoice choice;
  choice.mode = run.options.mode;
  choice.foreignOnly = run.options.foreignOnly;
  frmTBDetail detail;
  return printFile(run, pPutExcel2ER(run.session, run.host, books, list, detail, choice));
}

}  // namespace quillmarden
