#include "common/paths.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <vector>

#include "common/message.h"
#include "common/names.h"
#include "common/script_file.h"
#include "common/text.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSeparators = "\\/";
constexpr std::size_t kMaxLevels = 20;

bool isSeparator(char c) { return kSeparators.find(c) != std::string_view::npos; }

/// Copies into a file beside the target and puts it in the target's place once it is whole.
std::error_code copyAndRename(const fs::path& from, const fs::path& to) {
  fs::path beside = to;
  beside += "." + std::to_string(::getpid()) + ".tmp";
  std::error_code error;
  fs::copy_file(from, beside, fs::copy_options::overwrite_existing, error);
  if (!error) {
    if (const int descriptor = ::open(beside.c_str(), O_RDONLY | O_CLOEXEC); descriptor >= 0) {
      if (::fsync(descriptor) != 0) error = {errno, std::generic_category()};
      ::close(descriptor);
    }
  }
  if (!error) fs::rename(beside, to, error);
  std::error_code ignored;
  if (error) fs::remove(beside, ignored);
  return error;
}

void removeUnlessInUse(const fs::path& workFolder);

/// Removes what lies below; a script that another process is writing stays, and with it its folder.
void emptyUnlessInUse(const fs::path& workFolder) {
  std::error_code error;
  for (fs::directory_iterator entry(workFolder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->symlink_status(ignored).type() == fs::file_type::directory)
      removeUnlessInUse(entry->path());
    else if (!scriptInUse(entry->path()))
      fs::remove(entry->path(), ignored);
  }
}

void removeUnlessInUse(const fs::path& workFolder) {
  emptyUnlessInUse(workFolder);
  std::error_code ignored;
  fs::remove(workFolder, ignored);
}

void removeWorkFoldersIn(const fs::path& folder, const fs::path& keep) {
  std::error_code error;
  std::vector<fs::path> found;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    // A link is no work folder: what it points to is somebody's.
    if (entry->path().filename().string().ends_with("_-_-") &&
        entry->symlink_status(ignored).type() == fs::file_type::directory)
      found.push_back(entry->path());
  }
  for (const fs::path& workFolder : found) {
    if (workFolder == keep)
      emptyUnlessInUse(workFolder);
    else
      removeUnlessInUse(workFolder);
  }
}

}  // namespace

std::string gPathJoin(std::string_view folder, std::string_view file) {
  folder = trim(folder);
  file = trim(file);
  if (folder.empty()) return std::string(file);
  if (file.empty()) return std::string(folder);
  while (!folder.empty() && isSeparator(folder.back())) folder.remove_suffix(1);
  while (!file.empty() && isSeparator(file.front())) file.remove_prefix(1);
  std::string path(folder);
  path += static_cast<char>(fs::path::preferred_separator);
  return path.append(file);
}

std::string gSafePathJoin(std::string_view folder, std::string_view file) {
  return gPathJoin(folder, gSafeFileName(file));
}

fs::path toPath(std::string_view text) {
  std::string path(text);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

bool gMakeFolder(std::string_view path, std::string* error) {
  const fs::path whole = toPath(trim(path));
  if (error) error->clear();
  std::error_code last;
  fs::path level = whole.root_path();
  std::size_t depth = 0;
  for (const fs::path& part : whole.relative_path()) {
    if (part.empty()) continue;
    if (++depth > kMaxLevels) {
      last = std::make_error_code(std::errc::filename_too_long);
      break;
    }
    level /= part;
    std::error_code failure;
    fs::create_directory(level, failure);
    std::error_code ignored;
    if (failure && !fs::is_directory(level, ignored)) last = failure;
  }
  std::error_code ignored;
  if (fs::is_directory(whole, ignored)) return true;
  if (error && last) *error = last.message();
  return false;
}

bool gChkFolder(std::string_view path) {
  std::error_code ignored;
  return fs::is_directory(toPath(trim(path)), ignored);
}

bool gFileExists(Host& host, std::string_view path, bool show) {
  const fs::path file = toPath(trim(path));
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::exists(status) && !fs::is_directory(status)) return true;
  if (show)
    gMsgBox(host, joinLines({"指定のファイルが存在しません.", file.filename().string(), file.parent_path().string()}));
  return false;
}

std::string gGetServerName(std::string_view path) {
  if (path.size() < 2 || !isSeparator(path[0]) || path[0] != path[1]) return std::string(path);
  path.remove_prefix(2);
  return std::string(path.substr(0, path.find_first_of(kSeparators)));
}

std::string gGetDataFolder(const Machine& machine) {
  const fs::path folder = machine.appDataFolder / "quillmarden";
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  return folder.string();
}

std::filesystem::path assetsFolder(const std::filesystem::path& configured) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error) return configured;
  for (const std::filesystem::path& place : {program / "assets", program.parent_path() / "share" / "quillmarden"}) {
    if (std::filesystem::is_directory(place, error)) return place;
  }
  return configured;
}

std::filesystem::path templatePath(const Machine& machine, std::string_view name) {
  const std::filesystem::path file = machine.programFolder / toPath(name);
  std::error_code error;
  if (std::filesystem::exists(file, error)) return file;
  const std::filesystem::path own = toPath(gGetDataFolder(machine)) / toPath(name);
  return std::filesystem::exists(own, error) ? own : file;
}

bool gBrowseFolder(Host& host, std::string& selected) {
  if (!host.dialogs.browseFolder) return false;
  std::string chosen = host.dialogs.browseFolder("フォルダを指定して下さい。");
  if (trim(chosen).empty()) return false;
  selected = std::move(chosen);
  return true;
}

bool gFileCopy(std::string_view from, std::string_view to, bool overwrite, std::string* message) {
  const auto fail = [&](std::string text) {
    if (message) *message = std::move(text);
    return false;
  };
  if (message) message->clear();
  const fs::path source = toPath(trim(from));
  const fs::path target = toPath(trim(to));
  std::error_code error;
  if (!fs::is_regular_file(source, error) || target.empty() || fs::is_directory(target, error) ||
      fs::equivalent(source, target, error))
    return fail("複写元／複写先の指定が不正です.");
  if (!overwrite && fs::exists(target, error))
    return fail("複写先に同じファイルが存在し、ユーザーにより[いいえ]が選択されました.");
  if (const std::error_code failure = copyAndRename(source, target)) return fail(failure.message());
  return true;
}

void removeWorkFolders(const Machine& machine, const fs::path& keep) {
  removeWorkFoldersIn(machine.appDataFolder, keep);
  removeWorkFoldersIn(machine.appDataFolder / "quillmarden", keep);
  removeWorkFoldersIn(machine.tempFolder, keep);
}

}  // namespace quillmarden
