#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "screen/host.h"

namespace quillmarden {

/// The one message routine: shows the text and gives the code of the pressed button; kYes is Yes.
int gMsgBox(Host& host, std::string_view text, int style = kOkOnly, std::string_view title = "確認");
/// Asks whether to go on editing what has unsaved changes; `name` is shown on a line of its own. True on Yes.
bool gAskKeepEditing(Host& host, std::string_view name);
/// The lines joined by line breaks.
std::string joinLines(std::initializer_list<std::string_view> lines);

}  // namespace quillmarden
