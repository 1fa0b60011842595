#include "repository/output_file.h"

#include <algorithm>
#include <system_error>
#include <vector>

#include "common/message.h"
#include "common/paths.h"
#include "common/replace_file.h"
#include "common/work_folders.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

bool isSameFile(const fs::path& one, const fs::path& other) {
  std::error_code error;
  if (fs::equivalent(one, other, error)) return true;
  // A journal comes and goes. A relative name of which nothing exists stays relative when it is made canonical.
  return fs::weakly_canonical(fs::absolute(one, error), error) ==
         fs::weakly_canonical(fs::absolute(other, error), error);
}

bool isRepository(const Session& session, const fs::path& file) {
  if (!session.gDB) return false;
  constexpr std::string_view kBeside[] = {"", "-journal", "-wal", "-shm"};
  return std::ranges::any_of(
      kBeside, [&](std::string_view ending) { return isSameFile(session.gDB->path() + std::string(ending), file); });
}

/// The templates that the program has, and those that the Systems name.
std::vector<fs::path> templates(Session& session, const Host& host) {
  std::vector<fs::path> found = {host.machine.programFolder / toPath("t白紙.xls"),
                                 host.machine.programFolder / "key.bmp"};
  if (!session.gDB) return found;
  for (Recordset rows = session.gDB->openRecordset("SELECT DISTINCT 書式ファイル名 FROM MAS_SYSTEM"); !rows.eof();
       rows.moveNext()) {
    const std::string name(rows.text(0));
    if (name.empty()) continue;
    found.push_back(templatePath(host.machine, name));
    found.push_back(toPath(gPathJoin(session.gDataFolder, name + ".inf")));
  }
  return found;
}

}  // namespace

std::string outputFault(Session& session, const Host& host, const fs::path& file) {
  const auto refuse = [&](std::string_view reason) {
    return joinLines({"出力先に指定できないファイルです.", "  " + file.string(), reason});
  };
  if (isRepository(session, file)) return refuse("接続中のデータベースのファイルです.");
  if (targetFault(file) == TargetFault::NotPlain)
    return refuse("通常のファイルではありません. フォルダ、リンク、デバイスには出力できません.");
  const std::vector<fs::path> kept = templates(session, host);
  if (std::ranges::any_of(kept, [&](const fs::path& one) { return isSameFile(one, file); }))
    return refuse("書式のファイルです.");
  if (isSameFile(toPath(session.gIniFile), file)) return refuse("設定のファイルです.");
  return "";
}

void noteOutput(const Session& session, const Host& host, const fs::path& file) {
  noteResult(file, host.clock.now(), session.outputsStay);
}

}  // namespace quillmarden
