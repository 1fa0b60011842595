#include "workbook/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

#include "workbook/workbook_error.h"

namespace quillmarden {

FileReplacement::FileReplacement(const std::filesystem::path& target) {
  std::error_code error;
  target_ = std::filesystem::weakly_canonical(target, error);  // a link is followed
  if (error) target_ = target;
  struct stat state {};
  const bool exists = ::stat(target_.c_str(), &state) == 0;
  errno = EISDIR;
  if (exists && !S_ISREG(state.st_mode)) fail();
  beside_ = target_;
  beside_ += "." + std::to_string(::getpid()) + ".tmp";
  ::unlink(beside_.c_str());  // of a process that died with our number
  handle_ = ::open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (handle_ < 0) fail();
  if (exists && ::fchmod(handle_, state.st_mode & 07777) != 0) errno = 0;  // the rights of the former file, if we may
}

FileReplacement::~FileReplacement() {
  if (handle_ >= 0) ::close(handle_);
  if (!beside_.empty()) ::unlink(beside_.c_str());
}

void FileReplacement::fail() const {
  const std::string reason = std::strerror(errno);
  // The constructor's failures don't reach the destructor.
  if (handle_ < 0 && !beside_.empty() && errno != EEXIST) ::unlink(beside_.c_str());
  throw WorkbookError(WorkbookFault::CannotWrite, target_.string(), "書き込めません: " + reason);
}

void FileReplacement::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(handle_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void FileReplacement::commit() {
  const int handle = std::exchange(handle_, -1);
  if (::close(handle) != 0) fail();
  if (std::rename(beside_.c_str(), target_.c_str()) != 0) fail();
  beside_.clear();
}

}  // namespace quillmarden
