#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "repository/session.h"
#include "screen/host.h"
#include "workbook/font_metrics.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// A table's place among those that come to one file name.
struct LayoutName {
  std::string stem;
  int number = 1;
};

/// What the workbooks of one run share: fonts and templates are read once.
struct BookRun {
  FontBook fonts;
  std::map<std::filesystem::path, Workbook> templates;
  std::filesystem::path outputFolder;  ///< instead of the System's own folder; empty for that
  std::filesystem::path outputFile;    ///< instead of the routine's own file; empty for that
  bool stopped = false;                ///< the person stopped it, which is told

  // Of table layouts: see layout_names.h.
  std::map<std::pair<std::string, std::string (*)(std::string_view)>, std::map<std::string, LayoutName>> layoutNames;
  std::map<std::string, std::string> layoutFiles;  ///< the table that has a file
  std::vector<std::string> numbered;

  std::vector<std::string> cutTexts{};  ///< tables and fields of texts that were too long for their cells
  std::string formatFault{};            ///< what was wrong with the Format file of the last layout
};

/// Shows a wait text and takes it away at the end of its scope.
class WaitText {
 public:
  WaitText(Host& host, std::string_view text) : host_(host) { host.dialogs.waitText(text); }
  ~WaitText() { host_.dialogs.waitText(""); }
  WaitText(const WaitText&) = delete;
  WaitText& operator=(const WaitText&) = delete;

 private:
  Host& host_;
};

/// The record of the System that an output is for. False after a message: no System, or none of that name.
bool readOutputSystem(Session& session, Host& host, std::string_view systemName, SystemRecord& system);

/// A file in the folder of the run, or else in that System's folder for layouts, which is made when missing.
std::string layoutFile(Session& session, const BookRun& run, const SystemRecord& system, std::string_view fileName);
/// A file in the work folder of the program, which is made when missing.
std::string temporaryFile(const Session& session, std::string_view fileName);
/// The file of the run where it names one, else that file in the work folder.
std::string workFile(const Session& session, const BookRun& run, std::string_view fileName);

/// Whether this is no file for an output, which is then told. A former output stands until the new one is whole.
bool outputRefused(Session& session, Host& host, const std::string& path);
/// Whether another office program holds the file, or it is not ours to replace.
bool inUse(const std::string& path);
/// The message that names a file in use.
void tellInUse(Host& host, const std::string& path);
/// Whether an output may take this file's place; what stands in the way is told.
bool mayReplaceOrTell(Session& session, Host& host, const std::string& path);

/// The name for what a stopped run leaves of this file; nobody is to take it for a whole one.
std::string stoppedFile(const Session& session, const Host& host, const std::string& path);
/// The end of a stopped run that leaves nothing, which is told; gives "" for its file.
std::string endStopped(Host& host, BookRun& run);

/// The template, read by its first use in the run; one in the old binary form is converted on the way. Throws
/// WorkbookError.
const Workbook& openTemplate(BookRun& run, const std::filesystem::path& file);

/// The properties and the file of a finished book; the folder is there. Throws WorkbookError. `stop` as in
/// Workbook::save.
void saveBook(Session& session, Host& host, Workbook& book, std::string_view title, const std::string& path,
              const StopCheck& stop = {});

/// Runs a piece of an output that is about one table, so that what it throws names the table.
template <class Work>
auto forTable(std::string_view table, const Work& work) {
  const auto named = [table](const std::exception& error) {
    return "テーブル「" + std::string(table) + "」: " + error.what();
  };
  try {
    return work();
  } catch (const WorkbookError& error) {
    throw WorkbookError(error.fault(), "", named(error));
  } catch (const EngineError& error) {
    throw EngineError(error.number(), named(error));
  }
}

/// Notes which texts of a finished sheet were cut; `place` names the table and field of a cell.
void noteCutTexts(BookRun& run, const Worksheet& sheet, const std::function<std::string(CellRef)>& place);
/// One message for all texts of the run that were cut, which are then forgotten.
void tellCutTexts(Host& host, BookRun& run);

/// Logs and tells what ended an output.
void tellBookError(Session& session, Host& host, std::string_view routine, const std::exception& error);

/// Tells that the file will be opened, and opens it.
void openFinished(Host& host, const std::string& path, std::string_view title = "確認");

/// Runs an output that gives its file, "" after its own message; with `openAfter` the file is then opened. What it
/// throws is told, and "" comes back.
std::string runOutput(Session& session, Host& host, std::string_view routine, bool openAfter,
                      const std::function<std::string()>& output);

/// A sheet's name as spreadsheet programs take it: cut at 31 UTF-16 units, "_" for control characters and what is no
/// text, a name that they keep for themselves with "_" behind it.
std::string cutSheetName(std::string_view name);

}  // namespace quillmarden
