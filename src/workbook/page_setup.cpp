#include "workbook/page_setup.h"

namespace quillmarden {

std::string headerText(std::string_view text) {
  std::string out;
  for (const char c : text) out.append(c == '&' ? 2 : 1, c);
  return out;
}

std::string joinHeader(const HeaderTexts& texts) {
  std::string out;
  const auto put = [&](std::string_view code, const std::string& text) {
    if (!text.empty()) out.append(code).append(text);
  };
  put("&L", texts.left);
  put("&C", texts.center);
  put("&R", texts.right);
  return out;
}

HeaderTexts splitHeader(std::string_view joined) {
  HeaderTexts texts;
  std::string* current = &texts.center;  // text before the first code is centred
  for (std::size_t i = 0; i < joined.size(); ++i) {
    if (joined[i] != '&' || i + 1 == joined.size()) {
      *current += joined[i];
      continue;
    }
    const char code = joined[++i];
    if (code == 'L' || code == 'C' || code == 'R') {
      current = code == 'L' ? &texts.left : code == 'C' ? &texts.center : &texts.right;
    } else {
      current->append("&").append(1, code);
    }
  }
  return texts;
}

}  // namespace quillmarden
