#include "cli/save.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cli/console_session.h"
#include "cli/grid_file.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

namespace {

bool readFile(Run& run, const std::string& file, std::string& text) {
  std::error_code ignored;
  bool folder = std::filesystem::is_directory(file, ignored);
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!folder && stream) text.assign(std::istreambuf_iterator<char>(stream), {});
  if (!folder && stream && !stream.bad()) return true;
  failure(run, fmt::format("ファイルを読み込めませんでした.\n {}\n {}", file, std::strerror(folder ? EISDIR : errno)));
  return false;
}

}  // namespace

ExitStatus runSave(Run& run) {
  frmTBDetail detail;
  std::string text;
  if (!readFile(run, run.options.gridFile, text) || !enterSystem(run, run.options.system) ||
      !openTable(run, run.options.table, detail))
    return kFailed;
  if (detail.readOnly || !run.session.gCanEdit)
    return failure(run, fmt::format("このテーブルは編集できません.\n {}", detail.caption));

  GridText grid = parseGridText(text, detail.Spread);
  if (!grid.fault.empty()) return failure(run, fmt::format("{}\n {}", run.options.gridFile, grid.fault));
  replaceRows(detail.Spread, std::move(grid.rows));
  for (int row = 1; row <= detail.Spread.maxRows(); ++row)
    detail.Spread.setText(field_col::kChanged, row, std::string(kChangedMark));
  detail.changed = true;
  return CmdUpDate_Click(run.session, run.host, detail) ? kFailed : kDone;
}

}  // namespace quillmarden
