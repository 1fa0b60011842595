#include "common/script_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "common/text.h"

namespace quillmarden {

namespace {

[[noreturn]] void fail(int error, const std::filesystem::path& file) {
  throw std::system_error(error, std::generic_category(), file.string());
}

}  // namespace

ScriptFile::ScriptFile(std::filesystem::path file, TextEncoding encoding, bool append)
    : file_(std::move(file)), encoding_(encoding) {
  const int mode = append ? O_APPEND : O_TRUNC;
  descriptor_ = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | mode, 0666);
  if (descriptor_ < 0) fail(errno, file_);
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    ::close(descriptor_);
    fail(ETXTBSY, file_);
  }
}

bool scriptInUse(const std::filesystem::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  if (descriptor < 0) return false;
  const bool used = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(descriptor);
  return used;
}

ScriptFile::~ScriptFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::u32string ScriptFile::write(std::string_view utf8) {
  std::u32string lost;
  std::string converted;
  std::string_view bytes = utf8;
  if (encoding_ == TextEncoding::Cp932) {
    converted = toCp932(utf8, &lost);
    bytes = converted;
  }
  // A pipe or a device has no end to go back to; the seek tells.
  const off_t complete = ::lseek(descriptor_, 0, SEEK_END);
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      const int error = written < 0 ? errno : EIO;
      const bool whole = complete < 0 || ::ftruncate(descriptor_, complete) == 0;
      if (whole && complete >= 0) ::lseek(descriptor_, complete, SEEK_SET);
      fail(error, file_);
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return lost;
}

void ScriptFile::close() {
  if (descriptor_ < 0) return;
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) != 0 && errno != EINTR) fail(errno, file_);
}

}  // namespace quillmarden
