#include "common/message.h"

namespace quillmarden {

int gMsgBox(Host& host, std::string_view text, int style, std::string_view title) {
  return host.dialogs.message ? host.dialogs.message(text, style, title) : static_cast<int>(kOk);
}

bool gAskKeepEditing(Host& host, std::string_view name) {
  const std::string line = "    " + std::string(name);
  return gMsgBox(host, joinLines({"内容が変更されています.", line, "の編集を続けますか?"}),
                 kYesNo | kQuestionIcon | kKeepsOnYes, "確認") == kYes;
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
