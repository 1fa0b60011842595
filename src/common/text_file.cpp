#include "common/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "common/replace_file.h"
#include "common/text.h"

namespace quillmarden {

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

/// A file descriptor that closes itself.
struct Descriptor {
  int number;
  ~Descriptor() {
    if (number >= 0) ::close(number);
  }
};

}  // namespace

std::optional<std::string> readFile(const std::filesystem::path& file, std::error_code& error, std::size_t most) {
  std::optional<std::string> bytes = readBeginning(file, error, most + 1);
  if (!bytes || bytes->size() <= most) return bytes;
  error = std::make_error_code(std::errc::file_too_large);
  return std::nullopt;
}

std::optional<std::string> readBeginning(const std::filesystem::path& file, std::error_code& error, std::size_t most) {
  error.clear();
  // Without O_NONBLOCK a pipe in the file's place would wait for a writer that never comes.
  const Descriptor descriptor{::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
  struct stat state {};
  if (descriptor.number < 0 || ::fstat(descriptor.number, &state) != 0) {
    error = lastError();
    return std::nullopt;
  }
  if (!S_ISREG(state.st_mode)) {
    error = std::make_error_code(std::errc::not_supported);
    return std::nullopt;
  }
  std::string bytes;
  bytes.reserve(std::min(static_cast<std::size_t>(state.st_size), most));
  char block[16384];
  for (;;) {
    const ssize_t got = ::read(descriptor.number, block, std::min(sizeof block, most - bytes.size()));
    if (got == 0) return bytes;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      error = lastError();
      return std::nullopt;
    }
    bytes.append(block, static_cast<std::size_t>(got));
  }
}

bool replaceFile(const std::filesystem::path& file, std::string_view bytes) {
  try {
    FileReplacement replacement(file, TargetLinks::Followed);
    replacement.write(bytes);
    replacement.commit();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

std::string decodeText(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return std::string(bytes.substr(kUtf8Mark.size()));
  return fromCp932(bytes);
}

std::string encodeText(std::string_view utf8) {
  std::u32string lost;
  std::string bytes = toCp932(utf8, &lost);
  if (lost.empty()) return bytes;
  return std::string(kUtf8Mark).append(utf8);
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(text.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
  }
  return lines;
}

}  // namespace quillmarden
