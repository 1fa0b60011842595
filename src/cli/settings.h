#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/run.h"
#include "screen/controls.h"

namespace quillmarden {

/// A column that --set NAME=VALUE changes on a screen's record.
struct SettableColumn {
  std::string name;
  /// Takes the value; gives what is wrong with it, "" for nothing.
  std::function<std::string(const std::string& value)> take;
};

/// The name in front of the first "=", and what stands behind it.
std::string settingName(const std::string& setting);
std::string settingValue(const std::string& setting);

/// Hands each setting to its column, in their order. False after the message of the first fault; a column of `table`
/// that is none of the known ones is told apart from a name that no column has.
bool takeSettings(Run& run, std::string_view table, const std::vector<SettableColumn>& known,
                  const std::vector<std::string>& settings);

// What columns take.
SettableColumn textColumn(std::string name, TextBox& box);
/// A whole number of at most nine digits, or none.
SettableColumn digitsColumn(std::string name, TextBox& box);
/// 0, -1 or 1; `inverted` where the box says the opposite of the column.
SettableColumn flagColumn(std::string name, CheckBox& box, bool inverted = false);
/// One of the box's entries, in any case; `changed` then follows. A blank one only where the box `offersNone`.
SettableColumn entryColumn(std::string name, ComboBox& box, std::function<void()> changed = {},
                           bool offersNone = false);
/// A box that takes any text beside its entries.
SettableColumn textColumn(std::string name, ComboBox& box);

}  // namespace quillmarden
