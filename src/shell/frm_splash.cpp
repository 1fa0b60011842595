#include "shell/frm_splash.h"

#include <string_view>

#include "common/log.h"
#include "common/numbers.h"

namespace quillmarden {

namespace {

#if defined(_WIN32)
constexpr std::string_view kPlatform = "Windows";
#elif defined(__APPLE__)
constexpr std::string_view kPlatform = "macOS";
#else
constexpr std::string_view kPlatform = "Linux";
#endif

}  // namespace

std::string versionLabel() {
  // The version text has its parts in two digits; labels show plain numbers.
  const std::string version = gGetVersion();
  std::string label = "version ";
  for (std::size_t start = 0; start <= version.size();) {
    const std::size_t end = std::min(version.find('.', start), version.size());
    if (start > 0) label += ".";
    label += std::to_string(static_cast<int>(gVal(version.substr(start, end - start))));
    start = end + 1;
  }
  return label;
}

void frmSplash_Load(frmSplash& screen) {
  screen = {};
  screen.lblVersion.caption = versionLabel();
  screen.lblPlatform.caption = kPlatform;
}

}  // namespace quillmarden
