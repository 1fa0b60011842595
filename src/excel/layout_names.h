#pragma once

#include <string>
#include <string_view>

#include "editing/frm_tb_detail.h"
#include "excel/book_run.h"

namespace quillmarden {

/// A table's name as a file's, without the ending.
using FileStem = std::string (*)(std::string_view japaneseName);

/// The path of a table's layout in the folder of the run or of that System. Where several tables of the System come to
/// one file name, all but the first have a number behind it, the same in every run; `run.numbered` then names it.
std::string layoutPath(Session& session, BookRun& run, const frmTBDetail& detail, const SystemRecord& system,
                       FileStem stem, std::string_view ending);

/// Tells the files of the run that were numbered, once.
void tellNumbered(Host& host, BookRun& run);

}  // namespace quillmarden
