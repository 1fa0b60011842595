#include "common/names.h"

#include <fmt/format.h>

#include "common/text.h"
#include "common/utf8.h"

namespace quillmarden {

std::string gSafeFileName(std::string_view text, std::string_view replacement) {
  std::string safe;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool unsafe =
        byte < 0x20 || byte == 0x7F || std::string_view("[]@\\/:*?<>|\"").find(c) != std::string_view::npos;
    if (unsafe)
      safe += replacement;
    else
      safe += c;
  }
  return safe;
}

std::string gSplitTableName(std::string_view text) {
  std::string_view name = trim(text.substr(0, text.find('\t')));
  if (name.starts_with('<') || name.starts_with('[')) {
    const char closing = name.front() == '<' ? '>' : ']';
    name.remove_prefix(1);
    if (name.ends_with(closing)) name.remove_suffix(1);
  }
  const std::size_t prefix = name.find('@');
  if (prefix != std::string_view::npos && prefix + 1 < name.size()) name.remove_prefix(prefix + 1);
  return std::string(trim(name));
}

bool gChkMark(std::string_view text) { return text.find_first_of("<>[]") != std::string_view::npos; }

std::string gEncodeName(std::string_view text) {
  std::string name = "{";
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    std::u32string lost;
    const std::string bytes = toCp932(text.substr(at, step.size), &lost);
    if (step.character == U'_') {
      name += '_';
    } else if (!lost.empty()) {
      name += fmt::format("u{:04x}", static_cast<unsigned>(step.character));
    } else {
      unsigned number = 0;
      for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
      name += std::to_string(number);
    }
    at += step.size;
  }
  return name + '}';
}

}  // namespace quillmarden
