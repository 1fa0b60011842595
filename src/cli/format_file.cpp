#include "cli/format_file.h"

#include "excel/format_file.h"

namespace quillmarden {

namespace {

struct FormatFileOptions {
  std::string name;
  bool check = false;
};

void addFormatFileOptions(OptionSet& set, FormatFileOptions& options) {
  set.text("NAME", options.name, "", "書式ファイル名(システムの書式ファイル名と同じ)").filled().required();
  set.flag("--check", options.check, "作成せずに、定義エラーをチェックする");
}

ExitStatus runFormatFile(Run& run, const FormatFileOptions& options) {
  const std::string& name = options.name;
  if (!options.check) {
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

}  // namespace

constinit const Command kFormatFileCommand{
    .name = "format-file",
    .group = CommandGroup::Workbooks,
    .help = "書式ファイルがなければ初期の内容で作成し、ファイル名を表示する",
    .prepare = prepareCommand<FormatFileOptions, addFormatFileOptions, runFormatFile>};

}  // namespace quillmarden
