#include "editing/file_link.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <system_error>

#include "common/message.h"
#include "common/names.h"
#include "common/paths.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"
#include "repository/rights.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

namespace col = field_col;

constexpr std::string_view kFileLinkType = "FileLink";
constexpr int kFirstNumberDigits = 4;

/// The next free number of a copy in the folder.
int nextNumber(const fs::path& folder) {
  int highest = 0;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int number = 0;
    const auto read = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool numbered = read.ec == std::errc() && read.ptr >= name.data() + kFirstNumberDigits &&
                          read.ptr < name.data() + name.size() && *read.ptr == '_';
    if (numbered) highest = std::max(highest, number);
  }
  return highest + 1;
}

/// Copies a file beside the Repository. The copy's name, or "" after a message.
std::string copyBeside(const Session& session, Host& host, frmTBDetail& screen, const fs::path& file) {
  const fs::path folder = fileLinkFolder(session);
  std::string reason;
  pPutWaitMsg(host, screen, true, "複写中です.\n処理中です.");
  std::string name;
  if (gMakeFolder(folder.string(), &reason)) {
    name = fmt::format("{:04}_{}", nextNumber(folder), gSafeFileName(file.filename().string()));
    if (!gFileCopy(file.string(), (folder / name).string(), false, &reason)) name.clear();
  }
  pPutWaitMsg(host, screen, false, "");
  if (name.empty()) gMsgBox(host, reason);
  return name;
}

/// The file of that path, whatever the case of its letters: a path that was once stored in one case is found again.
fs::path findFile(const fs::path& wanted) {
  std::error_code error;
  const std::string name = wanted.filename().string();
  if (name.empty() || fs::exists(wanted, error)) return wanted;
  const fs::path folder = findFile(wanted.parent_path());
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (equalsNoCase(entry->path().filename().string(), name)) return entry->path();
  return wanted;
}

}  // namespace

fs::path fileLinkFolder(const Session& session) {
  std::string name = toLower(session.gDbFileName);
  if (name.ends_with(".mdb")) name.resize(name.size() - 4);
  return toPath(gPathJoin(session.gDbFolder, "_FileLink_" + name));
}

bool isFileLinkType(std::string_view type) { return equalsNoCase(trim(type), kFileLinkType); }

bool isFileLinkCell(const frmTBDetail& screen, int number, int row) {
  if (screen.mode == DetailMode::Prj && number == col::kDbCheck) return true;
  const bool lists = screen.mode == DetailMode::FixedValue || screen.mode == DetailMode::Prj;
  return lists && number == col::kFieldName && isFileLinkType(screen.Spread.text(col::kType, row));
}

bool linkFile(Session& session, Host& host, frmTBDetail& screen, int number, int row, std::string_view file) {
  if (!editable(screen) || !isFileLinkCell(screen, number, row) || !gFileExists(host, file, true)) return true;
  if (refused(host, mayChangeTable(session, screen.lblID.caption, TableChange::kFields))) return true;
  std::string text(trim(file));
  if (session.gCurrentSystem.fileLinkCopy) text = copyBeside(session, host, screen, toPath(text));
  if (text.empty()) return true;
  if (const std::string fault = cellFault(screen, number, row, text); !fault.empty()) {
    gMsgBox(host, fault, kOkOnly | kWarningIcon, "入力確認");
    return true;
  }
  return !cellEdited(session, host, screen, number, row, text);
}

void openFileLink(Session& session, Host& host, const frmTBDetail& screen, int number, int row) {
  const std::string name(trim(screen.Spread.text(number, row)));
  if (name.empty() || !isFileLinkCell(screen, number, row)) return;
  const fs::path path = toPath(name);
  const fs::path file = findFile(path.is_absolute() ? path : fileLinkFolder(session) / path);
  if (gFileExists(host, file.string(), true) && host.opener.openFile) host.opener.openFile(file);
}

}  // namespace quillmarden
