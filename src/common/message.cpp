#include "common/message.h"

namespace quillmarden {

int gMsgBox(Host& host, std::string_view text, int style, std::string_view title) {
  return host.dialogs.message ? host.dialogs.message(text, style, title) : static_cast<int>(kOk);
}

std::string joinLines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    if (line != lines.begin()) text += '\n';
    text += *line;
  }
  return text;
}

}  // namespace quillmarden
