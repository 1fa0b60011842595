#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// A screen that stands open, seen or not.
struct OpenScreen {
  std::string name;
  bool visible = true;
};

/// The open screens, the one raised last at the end.
struct OpenScreens {
  std::vector<OpenScreen> screens;
  /// While all are hidden: those that were to be seen, in their order.
  std::vector<std::string> hidden;
  bool allHidden = false;

  OpenScreen* find(std::string_view name);
  const OpenScreen* find(std::string_view name) const;
  bool has(std::string_view name) const { return find(name) != nullptr; }
  /// Puts the screen at the end of the order, opening it when it is not open.
  OpenScreen& raise(std::string_view name);
  void remove(std::string_view name);
  std::vector<std::string> names() const;
};

}  // namespace quillmarden
