#include "common/printable.h"

#include "common/utf8.h"

namespace quillmarden {

bool holdsControl(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    if (!step.valid || isControl(step.character)) return true;
    at += step.size;
  }
  return false;
}

std::string printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    if (!step.valid)
      shown += "\uFFFD";
    else if (isControl(step.character) && step.character != U'\n' && step.character != U'\t')
      shown += ' ';
    else
      shown.append(text.substr(at, step.size));
    at += step.size;
  }
  return shown;
}

}  // namespace quillmarden
