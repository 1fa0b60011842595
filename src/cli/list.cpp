#include "cli/list.h"

#include "cli/generate.h"
#include "excel/list_book.h"

namespace quillmarden {

ExitStatus runList(Run& run) {
  frmTBList list;
  if (!chooseTables(run, list)) return kFailed;
  BookRun books;
  books.outputFile = run.options.output;
  return printFile(run, pPutTableListLayout2Excel(run.session, run.host, books, list, run.options.fields, false));
}

}  // namespace quillmarden
