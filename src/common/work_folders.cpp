#include "common/work_folders.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <optional>
#include <system_error>
#include <vector>

#include "common/replace_file.h"
#include "common/text.h"
#include "common/text_file.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

/// One line a result: day, whether it stays, name; the last one of a name holds.
constexpr std::string_view kNotes = ".results";
constexpr std::string_view kStays = "stays";
constexpr int kUserFolders = 10;

bool isOwnFolder(const fs::path& folder) {
  struct stat state {};
  return ::lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) && state.st_uid == ::geteuid();
}

/// Whether the folder is this user's, and nobody else can put anything in it.
bool isPrivate(const fs::path& folder) {
  struct stat state {};
  return ::stat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) && state.st_uid == ::geteuid() &&
         (state.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

fs::path userFolder(const Machine& machine, int number) {
  std::string name = "quillmarden-" + std::to_string(::geteuid());
  if (number > 0) name += "-" + std::to_string(number);
  return machine.tempFolder / name;
}

bool isWorkFolder(const fs::path& folder) { return folder.filename().string().ends_with(kWorkFolderEnding); }

std::string day(const DateTime& now) { return formatDateTime(now, "yyyy/mm/dd"); }

struct Note {
  std::string day;
  bool stays;
};

/// The notes of a work folder, held against other processes as long as this lives.
class Notes {
 public:
  Notes(const fs::path& folder, bool make) : file_(folder / kNotes) {
    const int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | (make ? O_CREAT : 0);
    for (;;) {
      handle_ = ::open(file_.c_str(), flags, 0600);
      if (handle_ < 0) return;
      struct stat held {};
      struct stat there {};
      // Whoever swept the last note away has taken the file with it.
      if (::flock(handle_, LOCK_EX) == 0 && ::fstat(handle_, &held) == 0 && ::lstat(file_.c_str(), &there) == 0 &&
          held.st_ino == there.st_ino && S_ISREG(held.st_mode))
        break;
      ::close(handle_);
      handle_ = -1;
      if (!make) return;
    }
    std::error_code error;
    const std::string text = readFile(file_, error).value_or("");
    for (const std::string_view line : splitLines(text)) {
      const std::size_t first = line.find('\t');
      const std::size_t second = line.find('\t', first + 1);
      if (first == std::string_view::npos || second == std::string_view::npos) continue;
      notes_[std::string(line.substr(second + 1))] = {std::string(line.substr(0, first)),
                                                      line.substr(first + 1, second - first - 1) == kStays};
    }
  }
  Notes(const Notes&) = delete;
  Notes& operator=(const Notes&) = delete;
  ~Notes() {
    if (handle_ >= 0) ::close(handle_);
  }

  const Note* find(const std::string& name) const {
    const auto note = notes_.find(name);
    return note == notes_.end() ? nullptr : &note->second;
  }
  void set(const std::string& name, Note note) {
    notes_[name] = std::move(note);
    write();
  }
  /// Keeps the notes that `keeps` says yes to; without any the file goes.
  template <typename Keeps>
  void reduce(Keeps&& keeps) {
    if (handle_ < 0) return;
    const std::size_t before = notes_.size();
    std::erase_if(notes_, [&](const auto& note) { return !keeps(note.first, note.second); });
    if (notes_.empty())
      ::unlink(file_.c_str());
    else if (notes_.size() != before)
      write();
  }

 private:
  void write() {
    std::string text;
    for (const auto& [name, note] : notes_)
      text += note.day + "\t" + std::string(note.stays ? kStays : "") + "\t" + name + "\n";
    // Notes that don't reach the disk cost a file that can be made again.
    if (handle_ < 0 || ::ftruncate(handle_, 0) != 0 || ::pwrite(handle_, text.data(), text.size(), 0) < 0) errno = 0;
  }

  fs::path file_;
  int handle_ = -1;
  std::map<std::string, Note> notes_;
};

/// Whether the file is at work somewhere: written by a process, or open in an office program.
bool inUse(const fs::path& file) { return heldBy(file) || beingWritten(file); }

/// The mark of an office program, and the file that it stands for; nothing for any other file.
std::optional<std::string> markedFile(const std::string& name) {
  if (name.starts_with("~$")) return name.substr(2);
  if (name.starts_with(".~lock.") && name.ends_with("#")) return name.substr(7, name.size() - 8);
  return std::nullopt;
}

bool keeps(const fs::path& file, const Note* note, const DateTime& now) {
  return (note && (note->stays || note->day == day(now))) || inUse(file);
}

void sweep(const fs::path& folder, const DateTime& now) {
  if (!isOwnFolder(folder)) return;
  Notes notes(folder, false);
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    found.push_back(entry->path());
  for (const fs::path& entry : found) {
    const std::string name = entry.filename().string();
    std::error_code ignored;
    if (fs::symlink_status(entry, ignored).type() == fs::file_type::directory) {
      sweep(entry, now);
      ::rmdir(entry.c_str());
    } else if (const auto marked = markedFile(name); marked && fs::exists(folder / *marked, ignored)) {
      continue;
    } else if (name != kNotes && !keeps(entry, notes.find(name), now)) {
      ::unlink(entry.c_str());
    }
  }
  notes.reduce([&](const std::string& name, const Note& note) {
    std::error_code ignored;
    return note.day == day(now) || fs::exists(folder / name, ignored);
  });
}

void sweepFoldersIn(const fs::path& place, const fs::path& keep, const DateTime& now) {
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(place, error), end; !error && entry != end; entry.increment(error))
    if (isWorkFolder(entry->path())) found.push_back(entry->path());
  for (const fs::path& folder : found) {
    sweep(folder, now);
    if (folder != keep && isOwnFolder(folder)) ::rmdir(folder.c_str());
  }
}

}  // namespace

fs::path userTempFolder(const Machine& machine) {
  std::error_code ignored;
  // One that is still missing will be made by this user.
  if (isPrivate(machine.tempFolder) || !fs::exists(machine.tempFolder, ignored)) return machine.tempFolder;
  for (int number = 0; number < kUserFolders; ++number) {
    fs::path folder = userFolder(machine, number);
    if (::mkdir(folder.c_str(), 0700) == 0) return folder;
    if (isOwnFolder(folder) && (isPrivate(folder) || ::chmod(folder.c_str(), 0700) == 0)) return folder;
  }
  return machine.appDataFolder / "quillmarden";
}

void noteResult(const fs::path& file, const DateTime& now, bool stays) {
  const std::string name = file.filename().string();
  if (!isWorkFolder(file.parent_path()) || name.find('\n') != std::string::npos) return;
  Notes(file.parent_path(), true).set(name, {day(now), stays});
}

bool isKeptResult(const fs::path& file, const DateTime& now) {
  const Notes notes(file.parent_path(), false);
  return keeps(file, notes.find(file.filename().string()), now);
}

void removeWorkFolders(const Host& host, const fs::path& keep) {
  const DateTime now = host.clock.now();
  const Machine& machine = host.machine;
  for (const fs::path& place : {machine.appDataFolder, machine.appDataFolder / "quillmarden", machine.tempFolder})
    sweepFoldersIn(place, keep, now);
  for (int number = 0; number < kUserFolders; ++number) {
    const fs::path folder = userFolder(machine, number);
    if (!isOwnFolder(folder)) continue;
    sweepFoldersIn(folder, keep, now);
    ::rmdir(folder.c_str());
  }
}

}  // namespace quillmarden
