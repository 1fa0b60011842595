#include "workbook/spill_buffer.h"

#include <algorithm>

namespace quillmarden {

bool SpillBuffer::spill() {
  file_.reset(std::tmpfile());
  if (!file_) return false;
  const bool written = std::fwrite(memory_.data(), 1, memory_.size(), file_.get()) == memory_.size();
  memory_ = std::string();
  return written;
}

bool SpillBuffer::write(std::string_view bytes) {
  const std::uint64_t end = place_ + bytes.size();
  if (!file_ && end > most_ && !spill()) return false;
  if (file_) {
    if (fseeko(file_.get(), static_cast<off_t>(place_), SEEK_SET) != 0) return false;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) return false;
  } else {
    if (memory_.size() < end) memory_.resize(static_cast<std::size_t>(end));
    memory_.replace(static_cast<std::size_t>(place_), bytes.size(), bytes);
  }
  place_ = end;
  size_ = std::max(size_, end);
  return true;
}

bool SpillBuffer::read(const std::function<void(std::string_view)>& take) {
  if (!file_) {
    take(memory_);
    return true;
  }
  std::rewind(file_.get());
  std::string block(1U << 16, '\0');
  std::uint64_t rest = size_;
  while (rest > 0) {
    const std::size_t got = std::fread(block.data(), 1, std::min<std::uint64_t>(block.size(), rest), file_.get());
    if (got == 0) return false;
    take(std::string_view(block).substr(0, got));
    rest -= got;
  }
  return true;
}

}  // namespace quillmarden
