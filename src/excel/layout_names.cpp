#include "excel/layout_names.h"

#include <fmt/format.h>

#include <set>

#include "common/message.h"
#include "common/names.h"
#include "common/paths.h"
#include "common/text.h"

namespace quillmarden {
namespace {

/// What two tables must not share, on file systems that don't know case either.
std::string fileKey(std::string_view stem) { return toUpper(trim(gSafeFileName(stem))); }

std::string withNumber(const std::string& stem, int number) {
  return number < 2 ? stem : fmt::format("{}({})", stem, number);
}

/// The numbers of the System's tables, in an order that holds from run to run; a table read from a database stands
/// behind the one that it belongs to.
std::map<std::string, LayoutName> layoutNames(Database& database, std::string_view system, FileStem stem) {
  std::map<std::string, LayoutName> names;
  std::set<std::string> taken;
  const std::vector<ParameterValue> wanted = {{"paraSystem", std::string(system)}};
  for (Recordset rows = database.openRecordset("SELECT ID, 日本語名 FROM MAS_TABLEINFO WHERE 削除フラグ = 0 AND "
                                               "(システム名 = paraSystem OR 全システム共通 = True) "
                                               "ORDER BY IIf(REVERSE_DB = True, 1, 0), ID",
                                               wanted);
       !rows.eof(); rows.moveNext()) {
    LayoutName name{stem(rows.text(1)), 1};
    while (!taken.insert(fileKey(withNumber(name.stem, name.number))).second) ++name.number;
    names.emplace(rows.text(0), std::move(name));
  }
  return names;
}

}  // namespace

std::string layoutPath(Session& session, BookRun& run, const frmTBDetail& detail, const SystemRecord& system,
                       FileStem stem, std::string_view ending) {
  const std::string owner = system.name.empty() ? detail.lblSystemName.caption : system.name;
  auto known = run.layoutNames.find({owner, stem});
  if (known == run.layoutNames.end())
    known = run.layoutNames.emplace(std::pair(owner, stem), layoutNames(*session.gDB, owner, stem)).first;
  const std::string& id = detail.lblID.caption;
  LayoutName name{stem(detail.txtTableNameJPN.text), 1};
  const auto stored = known->second.find(id);
  if (stored != known->second.end() && stored->second.stem == name.stem) name.number = stored->second.number;
  for (;; ++name.number) {
    std::string path = layoutFile(session, run, system, withNumber(name.stem, name.number).append(ending));
    // Tables of several Systems may meet in one folder.
    const auto [file, made] = run.layoutFiles.emplace(toUpper(path), id);
    if (!made && file->second != id) continue;
    if (made && name.number > 1)
      run.numbered.push_back(detail.txtTableNameJPN.text + " : " + toPath(path).filename().string());
    return path;
  }
}

void tellNumbered(Host& host, BookRun& run) {
  constexpr std::size_t kMostLines = 20;
  if (run.numbered.empty()) return;
  std::string text = "ファイル名が同じになるテーブルがあるため、番号を付けました.";
  for (std::size_t i = 0; i < run.numbered.size() && i < kMostLines; ++i) text += "\n  " + run.numbered[i];
  if (run.numbered.size() > kMostLines) text += fmt::format("\n  ほか {} 件", run.numbered.size() - kMostLines);
  run.numbered.clear();
  gMsgBox(host, text, kInformationIcon);
}

}  // namespace quillmarden
