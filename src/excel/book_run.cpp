#include "excel/book_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "common/message.h"
#include "common/paths.h"
#include "common/replace_file.h"
#include "common/text.h"
#include "common/utf8.h"
#include "repository/output_file.h"
#include "workbook/convert.h"

namespace quillmarden {
namespace {

constexpr std::string_view kTemporaryFolder = "TempTemp_-_-";

/// The moment as documents have it, which count in universal time.
std::string isoTime(const DateTime& local) {
  const DateTime moment = universalDateTime(local);
  return formatDateTime(moment, "yyyy-mm-dd") + "T" + formatDateTime(moment, "hh:nn:ss") + "Z";
}

}  // namespace

bool readOutputSystem(Session& session, Host& host, std::string_view systemName, SystemRecord& system) {
  if (trim(systemName).empty()) {
    gMsgBox(host, "システム名が未設定です.", kStopIcon);
    return false;
  }
  if (gMDB_GetSystemInfo(session, host, systemName, system)) return true;
  session.log.gPutLog(host, "システム情報取得失敗");
  gMsgBox(host, "システム情報取得失敗", kStopIcon);
  return false;
}

std::string layoutFile(Session& session, const BookRun& run, const SystemRecord& system, std::string_view fileName) {
  if (!run.outputFile.empty()) return run.outputFile.string();
  std::string folder = run.outputFolder.string();
  if (folder.empty()) {
    folder = system.name.empty() ? gPathJoin(session.gDataFolder, "TableLayout") : system.workFolder;
  }
  gMakeFolder(folder);
  return gSafePathJoin(folder, fileName);
}

std::string temporaryFile(const Session& session, std::string_view fileName) {
  const std::string folder = gPathJoin(session.gDataFolder, kTemporaryFolder);
  gMakeFolder(folder);
  return gPathJoin(folder, fileName);
}

std::string workFile(const Session& session, const BookRun& run, std::string_view fileName) {
  return run.outputFile.empty() ? temporaryFile(session, fileName) : run.outputFile.string();
}

bool outputRefused(Session& session, Host& host, const std::string& path) {
  const std::string fault = outputFault(session, host, toPath(path));
  if (fault.empty())
    noteOutput(session, host, toPath(path));
  else
    gMsgBox(host, fault, kStopIcon);
  return !fault.empty();
}

bool inUse(const std::string& path) { return targetFault(toPath(path)) == TargetFault::InUse; }

void tellInUse(Host& host, const std::string& path) {
  gMsgBox(host, joinLines({"指定ファイルは使用中です.", "  " + path, "確認して下さい.", "処理を中止します."}),
          kStopIcon);
}

bool mayReplaceOrTell(Session& session, Host& host, const std::string& path) {
  if (outputRefused(session, host, path)) return false;
  if (!inUse(path)) return true;
  tellInUse(host, path);
  return false;
}

std::string stoppedFile(const Session& session, const Host& host, const std::string& path) {
  const std::filesystem::path file = partialFile(toPath(path));
  noteOutput(session, host, file);
  return file.string();
}

std::string endStopped(Host& host, BookRun& run) {
  run.stopped = true;
  gMsgBox(host, "中断しました.\n出力ファイルはありません.");
  return "";
}

const Workbook& openTemplate(BookRun& run, const std::filesystem::path& file) {
  const auto known = run.templates.find(file);
  if (known != run.templates.end()) return known->second;
  const auto read = [&file] {
    try {
      return Workbook::open(file);
    } catch (const WorkbookError& error) {
      if (error.fault() != WorkbookFault::OldBinaryForm) throw;
      return Workbook::fromBytes(convertToPackage(file));
    }
  };
  Workbook book = read();
  try {
    // Read now what every output reads, so that a damage is told with the template's name.
    std::as_const(book).sheet(book.activeSheet()).used();
    book.styleAt(0);
  } catch (const WorkbookError& error) {
    throw WorkbookError(error.fault(), file.string(), error.what());
  }
  return run.templates.emplace(file, std::move(book)).first->second;
}

void saveBook(Session& session, Host& host, Workbook& book, std::string_view title, const std::string& path,
              const StopCheck& stop) {
  const std::string now = isoTime(host.clock.now());
  book.setProperties({.title = std::string(title),
                      .creator = session.gLoginUser,
                      .lastModifiedBy = session.gLoginUser,
                      .created = now,
                      .modified = now});
  // The output is a plain book, whatever its template was.
  book.makePlain();
  book.save(toPath(path), stop);
}

void noteCutTexts(BookRun& run, const Worksheet& sheet, const std::function<std::string(CellRef)>& place) {
  for (const CellRef cell : sheet.cutTexts()) run.cutTexts.push_back(place(cell));
}

void tellCutTexts(Host& host, BookRun& run) {
  if (run.cutTexts.empty()) return;
  constexpr std::size_t kMostNamed = 20;
  std::string text = "長すぎる文字列があります. セルに入る長さで切りました.";
  for (std::size_t i = 0; i < std::min(run.cutTexts.size(), kMostNamed); ++i) text += "\n " + run.cutTexts[i];
  if (run.cutTexts.size() > kMostNamed) text += fmt::format("\n ほか {} 件", run.cutTexts.size() - kMostNamed);
  run.cutTexts.clear();
  gMsgBox(host, text, kWarningIcon);
}

void tellBookError(Session& session, Host& host, std::string_view routine, const std::exception& error) {
  session.log.putError(host, routine, 0, error.what());
  std::string text = joinLines({"Excel作成中にエラーが発生しました.", std::string(" ") + error.what()});
  // A fault of the workbook itself has nothing to do with printers.
  if (dynamic_cast<const WorkbookError*>(&error) == nullptr) text += "\nプリンタがインストールされていますか?";
  gMsgBox(host, text);
}

void openFinished(Host& host, const std::string& path, std::string_view title) {
  gMsgBox(host, "対象ファイルを開きます.", kInformationIcon, title);
  host.opener.openFile(toPath(path));
}

std::string runOutput(Session& session, Host& host, std::string_view routine, bool openAfter,
                      const std::function<std::string()>& output) {
  try {
    std::string path = output();
    if (openAfter && !path.empty()) openFinished(host, path);
    return path;
  } catch (const std::exception& error) {
    tellBookError(session, host, routine, error);
    return "";
  }
}

std::string cutSheetName(std::string_view name) {
  constexpr int kMostUnits = 31;
  int units = 0;
  std::string cut;
  for (std::size_t at = 0; at < name.size();) {
    const Utf8Step step = utf8At(name, at);
    units += step.character > 0xFFFF ? 2 : 1;
    if (units > kMostUnits) break;
    const bool text = step.valid && step.character >= 0x20 && step.character != 0xFFFE && step.character != 0xFFFF;
    cut += text ? name.substr(at, step.size) : "_";
    at += step.size;
  }
  return isReservedSheetName(cut) ? cut + "_" : cut;
}

}  // namespace quillmarden
