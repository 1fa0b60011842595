#include "cli/run.h"

#include "common/message.h"
#include "common/text.h"

namespace quillmarden {

void putCell(std::string& output, std::string_view text) {
  for (char c : text) output += (c == '\t' || c == '\r' || c == '\n' || c == '\0') ? ' ' : c;
}

void putText(std::string& output, std::string_view text) { output += gReplaceAll(text, "\r\n", "\n"); }

ExitStatus failure(Run& run, std::string_view text) {
  gMsgBox(run.host, text, kOkOnly | kStopIcon);
  return kFailed;
}

}  // namespace quillmarden
