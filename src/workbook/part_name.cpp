#include "workbook/part_name.h"

#include <algorithm>

namespace quillmarden {

namespace {

char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

}  // namespace

std::string partKey(std::string_view name) {
  std::string key(name);
  std::transform(key.begin(), key.end(), key.begin(), small);
  return key;
}

bool samePart(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return small(x) == small(y); });
}

std::string partNameFault(std::string_view name) {
  if (name.empty()) return "名前がありません.";
  if (name.size() > 1024) return "名前が長すぎます.";
  for (const char c : name) {
    if (static_cast<unsigned char>(c) < 0x20) return "名前に制御文字があります.";
    if (c == '\\' || c == ':') return "名前に使えない文字があります.";
  }
  for (std::string_view rest = name;;) {
    const std::size_t slash = rest.find('/');
    const std::string_view segment = rest.substr(0, slash);
    if (segment.empty() || segment == "." || segment == "..") return "フォルダの外を指す名前です.";
    if (slash == std::string_view::npos) return "";
    rest.remove_prefix(slash + 1);
  }
}

std::string_view partFolder(std::string_view name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : name.substr(0, slash + 1);
}

}  // namespace quillmarden
