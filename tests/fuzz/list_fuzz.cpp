#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/list_file.h"
#include "common/text.h"

// Any bytes as a list file and as text: entries keep their promises, widths and cuts agree with each other, and what
// the code page holds comes back from it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmarden;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto entries = listEntries(bytes);
  if (entries.size() > kMaxListEntries) std::abort();
  for (const std::string& entry : entries) {
    const bool clean = std::none_of(entry.begin(), entry.end(), [](char c) { return c >= 0 && c < 0x20; });
    if (trim(entry).empty() || !clean) std::abort();
  }

  std::u32string lost;
  const std::string decoded = fromCp932(bytes);
  const std::string cells = toCp932(decoded, &lost);
  if (gLenB(decoded) != cells.size()) std::abort();
  if (lost.empty() && fromCp932(cells) != decoded) std::abort();
  if (gLenB(toNarrow(decoded)) > gLenB(decoded)) std::abort();

  // The bytes taken for UTF-8, which they may not be.
  const std::size_t width = gLenB(bytes);
  const std::size_t cut = size == 0 ? 0 : data[0] % (width + 2);
  if (gLenB(gPadText(bytes, width + 3, 1)) != width + 3) std::abort();
  if (gLenB(gMidB(bytes, 1, cut)) > cut) std::abort();
  if (gMidB(bytes, 1, width) != bytes) std::abort();
  if (!equalsNoCase(toLower(bytes), bytes)) std::abort();
  toWide(bytes);
  toUpper(bytes);
  return 0;
}
