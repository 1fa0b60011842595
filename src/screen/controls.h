#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// A colour as 0xBBGGRR, the order in which the settings keep it.
using Colour = std::uint32_t;

struct Label {
  std::string caption;
  bool visible = true;
  std::optional<Colour> foreColour;
  std::optional<Colour> backColour;
};

struct Picture {
  bool visible = false;
};

struct TextBox {
  std::string text;
  bool enabled = true;
  bool locked = false;
};

struct CheckBox {
  bool value = false;
  bool enabled = true;
};

struct OptionButton {
  bool value = false;
};

struct Button {
  bool enabled = true;
  bool visible = true;
};

struct MenuItem {
  bool enabled = true;
  bool visible = true;
  bool checked = false;
};

struct ComboBox {
  std::string text;
  std::vector<std::string> entries;
  bool enabled = true;
};

/// A list whose rows are texts, fields parted by tabs. Rows count from 0; listIndex -1 means no current row.
struct ListBox {
  std::vector<std::string> rows;
  std::vector<bool> selected;  ///< as long as rows
  int listIndex = -1;
  bool enabled = true;

  void clear();
  void add(std::string row);
  int count() const { return static_cast<int>(rows.size()); }
  /// The current row's text, "" when there is none.
  std::string_view text() const;
};

}  // namespace quillmarden
