#include "cli/format_file.h"

#include "excel/format_file.h"

namespace quillmarden {

ExitStatus runFormatFile(Run& run) {
  const std::string& name = run.options.file;
  if (!run.options.check) {
    if (writeDefaultLayoutFormat(run.session, run.host, name)) return kFailed;
    run.output = layoutFormatPath(run.session, name) + "\n";
    return kDone;
  }
  LayoutFormat format;
  std::string errorText;
  if (gGetLayoutFormat(run.session, run.host, name, format, errorText, true) != 0) return failure(run, errorText);
  run.output = "書式ファイルに定義エラーはありませんでした.\n";
  return kDone;
}

}  // namespace quillmarden
