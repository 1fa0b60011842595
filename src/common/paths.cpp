#include "common/paths.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "common/message.h"
#include "common/names.h"
#include "common/replace_file.h"
#include "common/text.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSeparators = "\\/";
constexpr std::size_t kMaxLevels = 20;

bool isSeparator(char c) { return kSeparators.find(c) != std::string_view::npos; }

/// Copies into a file that takes the target's place once it is whole. A new file gets the rights of the former.
std::error_code copyAndReplace(const fs::path& from, const fs::path& to) {
  std::error_code ignored;
  const bool made = !fs::exists(to, ignored);
  try {
    std::ifstream source(from, std::ios::binary);
    FileReplacement replacement(to);
    std::string block(1U << 16, '\0');
    do {
      source.read(block.data(), static_cast<std::streamsize>(block.size()));
      replacement.write(std::string_view(block).substr(0, static_cast<std::size_t>(source.gcount())));
    } while (source);
    if (!source.eof()) return std::make_error_code(std::errc::io_error);
    replacement.commit();
  } catch (const std::system_error& error) {
    return error.code();
  }
  if (made) fs::permissions(to, fs::status(from, ignored).permissions(), ignored);
  return {};
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
  const std::string safe = gSafeFileName(trim(file));
  constexpr std::size_t kLongestEnding = 20;
  std::size_t ending = std::min(safe.rfind('.'), safe.size());
  if (safe.size() - ending > kLongestEnding) ending = safe.size();
  return gPathJoin(folder, fitFileName(safe.substr(0, ending), safe.substr(ending)));
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
  if (const std::error_code failure = copyAndReplace(source, target)) return fail(failure.message());
  return true;
}

}  // namespace quillmarden
