#include "shell/open_screens.h"

#include <algorithm>

namespace quillmarden {

const OpenScreen* OpenScreens::find(std::string_view name) const {
  const auto found =
      std::find_if(screens.begin(), screens.end(), [&](const auto& screen) { return screen.name == name; });
  return found == screens.end() ? nullptr : &*found;
}

OpenScreen* OpenScreens::find(std::string_view name) {
  return const_cast<OpenScreen*>(static_cast<const OpenScreens&>(*this).find(name));
}

OpenScreen& OpenScreens::raise(std::string_view name) {
  const auto found =
      std::find_if(screens.begin(), screens.end(), [&](const auto& screen) { return screen.name == name; });
  if (found == screens.end()) {
    screens.push_back({std::string(name)});
  } else {
    std::rotate(found, found + 1, screens.end());
  }
  return screens.back();
}

void OpenScreens::remove(std::string_view name) {
  std::erase_if(screens, [&](const OpenScreen& screen) { return screen.name == name; });
  std::erase(hidden, name);
}

std::vector<std::string> OpenScreens::names() const {
  std::vector<std::string> names;
  for (const OpenScreen& screen : screens) names.push_back(screen.name);
  return names;
}

}  // namespace quillmarden
