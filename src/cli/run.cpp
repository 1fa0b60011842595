#include "cli/run.h"

#include "common/message.h"
#include "common/text.h"
#include "repository/rights.h"

namespace quillmarden {

void putCell(std::string& output, std::string_view text) {
  for (char c : text) output += (c == '\t' || c == '\r' || c == '\n' || c == '\0') ? ' ' : c;
}

void putText(std::string& output, std::string_view text) { output += gReplaceAll(text, "\r\n", "\n"); }

void putRecord(std::string& output, const Recordset& row) {
  for (int i = 0; !row.eof() && i < row.fieldCount(); ++i) {
    output += row.fieldName(i) + '\t';
    // Whoever has the file can read it there; what a command prints is logged, mailed and shown to others.
    const bool secret = equalsNoCase(row.fieldName(i), "password") && !row.text(i).empty();
    putCell(output, secret ? "********" : row.text(i));
    output += '\n';
  }
}

ExitStatus failure(Run& run, std::string_view text) {
  gMsgBox(run.host, text, kOkOnly | kStopIcon);
  return kFailed;
}

ExitStatus inOneTransaction(Run& run, const std::function<bool()>& steps) {
  if (refused(run.host, mayWrite(run.session))) return kFailed;
  bool done = false;
  Database& database = *run.session.gDB;
  database.beginTrans();
  try {
    done = steps();
  } catch (...) {
    if (database.inTransaction()) database.rollback();
    throw;
  }
  if (done)
    database.commitTrans();
  else
    database.rollback();
  return done ? kDone : kFailed;
}

}  // namespace quillmarden
