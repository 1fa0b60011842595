#include "cli/shown_rows.h"

#include <fmt/format.h>

#include <filesystem>
#include <functional>

#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"

namespace quillmarden {

namespace {

/// Tells the table, the user and the Repository, on one line.
std::string keyOf(const Run& run, const frmTBDetail& detail) {
  std::error_code ignored;
  const std::string file = std::filesystem::weakly_canonical(run.session.gDB->path(), ignored).string();
  return detail.lblID.caption + "\t" + toLower(run.session.gLoginUser) + "\t" + file;
}

std::filesystem::path folderOf(const Run& run) { return toPath(gPathJoin(run.session.gDataFolder, "ShownRows")); }

std::filesystem::path fileOf(const Run& run, const std::string& key) {
  return folderOf(run) / fmt::format("{:016x}.rows", std::hash<std::string>()(key));
}

}  // namespace

void keepShownRows(const Run& run, const frmTBDetail& detail) {
  if (detail.readOnly || !detail.loaded.known) return;
  const std::string key = keyOf(run, detail);
  if (gMakeFolder(folderOf(run).string())) replaceFile(fileOf(run, key), key + "\n" + loadedRowsText(detail.loaded));
}

void takeShownRows(const Run& run, frmTBDetail& detail) {
  const std::string key = keyOf(run, detail);
  std::error_code ignored;
  const std::optional<std::string> text = readFile(fileOf(run, key), ignored);
  if (!text || !text->starts_with(key + "\n")) return;
  std::optional<LoadedRows> shown = parseLoadedRows(std::string_view(*text).substr(key.size() + 1));
  if (!shown || sameRows(*shown, detail.loaded)) return;
  showFormerRows(detail, *shown);
  detail.loaded = std::move(*shown);
}

}  // namespace quillmarden
