#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillmarden {

/// Bytes that are written from beginning to end, with a step back here and there: in memory as long as they are few,
/// from there on in a nameless temporary file. So a book of any size is put together in little memory.
class SpillBuffer {
 public:
  /// `most` is how many bytes stay in memory.
  explicit SpillBuffer(std::uint64_t most = 8U << 20) : most_(most) {}

  /// Writes at the current place and goes behind it. False when the disk is full or there is none.
  bool write(std::string_view bytes);
  void seek(std::uint64_t place) { place_ = place; }
  std::uint64_t place() const { return place_; }
  std::uint64_t size() const { return size_; }

  /// Hands out all bytes piece by piece. False when they can't be read back.
  bool read(const std::function<void(std::string_view)>& take);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool spill();

  std::uint64_t most_;
  std::uint64_t place_ = 0;
  std::uint64_t size_ = 0;
  std::string memory_;
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace quillmarden
