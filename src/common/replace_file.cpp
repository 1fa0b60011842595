#include "common/replace_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>
#include <system_error>
#include <utility>

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMaxName = 255;

[[noreturn]] void fail(const fs::path& file, int error) {
  throw std::system_error(error, std::generic_category(), file.string());
}

/// The rights of the plain file that stands there; nothing where there is none.
std::optional<mode_t> formerRights(const fs::path& target) {
  struct stat state {};
  if (::lstat(target.c_str(), &state) != 0) return std::nullopt;
  if (!S_ISREG(state.st_mode)) fail(target, ENOTSUP);
  return state.st_mode & 07777;
}

fs::path followed(const fs::path& target) {
  std::error_code error;
  fs::path real = fs::weakly_canonical(target, error);
  return error ? target : real;
}

void writeAll(int handle, std::string_view bytes, const fs::path& file) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(handle, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) fail(file, written < 0 ? errno : EIO);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// The last steps: the former file's rights, the disk, the name.
void putInPlace(int handle, const fs::path& written, const fs::path& target) {
  // Rights that we may not give are no reason to lose what is written.
  if (const auto rights = formerRights(target); rights && ::fchmod(handle, *rights) != 0) errno = 0;
  // Some file systems know no waiting.
  if (::fsync(handle) != 0 && errno != EINVAL && errno != ENOTSUP) fail(target, errno);
  if (::rename(written.c_str(), target.c_str()) != 0) fail(target, errno);
}

/// A name that no other process, on this machine or another one, chooses as well.
fs::path nameBeside(const fs::path& target) {
  std::random_device random;
  char number[20];
  std::snprintf(number, sizeof number, ".%08x%08x", random(), random());
  std::string name = target.filename().string() + number + ".tmp";
  if (name.size() > kMaxName) name = std::string(number) + ".tmp";
  return target.parent_path() / name;
}

/// Whether the handle is still the file that bears this name.
bool isStill(int handle, const fs::path& name) {
  struct stat held {};
  struct stat there {};
  return ::fstat(handle, &held) == 0 && ::lstat(name.c_str(), &there) == 0 && held.st_ino == there.st_ino &&
         held.st_dev == there.st_dev;
}

}  // namespace

FileReplacement::FileReplacement(const fs::path& target, TargetLinks links)
    : target_(links == TargetLinks::Followed ? followed(target) : target) {
  formerRights(target_);
  beside_ = nameBeside(target_);
  handle_ = ::open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (handle_ < 0) fail(target_, errno);
  // Told to whoever sweeps; a file system without locks has no sweepers either.
  if (::flock(handle_, LOCK_EX | LOCK_NB) != 0) errno = 0;
}

FileReplacement::~FileReplacement() {
  if (handle_ < 0) return;
  ::close(handle_);
  ::unlink(beside_.c_str());
}

void FileReplacement::write(std::string_view bytes) { writeAll(handle_, bytes, target_); }

void FileReplacement::commit() {
  putInPlace(handle_, beside_, target_);
  if (::close(std::exchange(handle_, -1)) != 0 && errno != EINTR) fail(target_, errno);
}

fs::path partialFile(const fs::path& target) {
  const std::string ending = ".途中" + target.extension().string();
  return target.parent_path() / fitFileName(target.stem().string(), ending);
}

GrowingFile::GrowingFile(const fs::path& target) : target_(target), partial_(partialFile(target)) {
  formerRights(target_);
  take();
}

/// Opens, locks, and only then empties: what another process writes there is left alone.
void GrowingFile::take() {
  for (;;) {
    formerRights(partial_);
    const int handle = ::open(partial_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (handle < 0) fail(target_, errno);
    const bool taken = ::flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    // The process that had it before may have put it in its target's place meanwhile.
    const bool same = !taken && isStill(handle, partial_);
    struct stat state {};
    const bool ours = same && ::fstat(handle, &state) == 0 && S_ISREG(state.st_mode) && state.st_nlink == 1;
    if (ours && ::ftruncate(handle, 0) == 0) {
      handle_ = handle;
      return;
    }
    ::close(handle);
    if (taken) fail(target_, ETXTBSY);
    if (same) fail(target_, ENOTSUP);
  }
}

GrowingFile::~GrowingFile() {
  if (handle_ < 0) return;
  if (::lseek(handle_, 0, SEEK_END) == 0) ::unlink(partial_.c_str());
  ::close(handle_);
}

void GrowingFile::write(std::string_view piece) {
  const off_t whole = ::lseek(handle_, 0, SEEK_END);
  try {
    writeAll(handle_, piece, target_);
  } catch (const std::system_error&) {
    if (::ftruncate(handle_, whole) == 0) ::lseek(handle_, whole, SEEK_SET);
    throw;
  }
}

void GrowingFile::commit() {
  putInPlace(handle_, partial_, target_);
  if (::close(std::exchange(handle_, -1)) != 0 && errno != EINTR) fail(target_, errno);
}

bool beingWritten(const fs::path& file) {
  const int handle = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  if (handle < 0) return false;
  const bool written = ::flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(handle);
  return written;
}

std::optional<fs::path> heldBy(const fs::path& file) {
  const std::string name = file.filename().string();
  for (const std::string& mark : {"~$" + name, ".~lock." + name + "#"}) {
    const fs::path candidate = file.parent_path() / mark;
    std::error_code error;
    if (fs::exists(candidate, error)) return candidate;
  }
  return std::nullopt;
}

TargetFault targetFault(const fs::path& target) {
  if (heldBy(target)) return TargetFault::InUse;
  struct stat file {};
  if (::lstat(target.c_str(), &file) != 0) return TargetFault::None;
  if (!S_ISREG(file.st_mode)) return TargetFault::NotPlain;
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  if (::access(folder.c_str(), W_OK | X_OK) != 0) return TargetFault::InUse;
  // In a folder like the machine's temporary one only a file's owner, and the folder's, may take it away.
  struct stat around {};
  const uid_t self = ::geteuid();
  const bool sticky = ::stat(folder.c_str(), &around) == 0 && (around.st_mode & S_ISVTX) != 0;
  const bool barred = sticky && self != 0 && file.st_uid != self && around.st_uid != self;
  return barred ? TargetFault::InUse : TargetFault::None;
}

std::string fitFileName(std::string_view stem, std::string_view ending) {
  std::string name(stem);
  if (stem.size() + ending.size() > kMaxName) {
    std::uint32_t hash = 2166136261U;
    for (const char letter : stem) hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    char number[12];
    const int length = std::snprintf(number, sizeof number, "~%08x", hash);
    std::size_t room = kMaxName - std::min(kMaxName, ending.size() + static_cast<std::size_t>(length));
    while (room > 0 && (static_cast<unsigned char>(name[room]) & 0xC0U) == 0x80U) --room;
    name.resize(room);
    name += number;
  }
  return name.append(ending);
}

}  // namespace quillmarden
