#include "cli/run.h"

#include "common/message.h"

namespace quillmarden {

void putCell(std::string& output, std::string_view text) {
  for (char c : text) output += (c == '\t' || c == '\r' || c == '\n' || c == '\0') ? ' ' : c;
}

ExitStatus failure(Run& run, std::string_view text) {
  gMsgBox(run.host, text, kOkOnly | kStopIcon);
  return kFailed;
}

}  // namespace quillmarden
