#include "cli/settings.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/text.h"

namespace quillmarden {

namespace {

std::string settingFault(std::string_view what, const std::string& setting, std::string_view how) {
  return fmt::format("{}\n --set {}\n {}", what, setting, how);
}

bool takeSetting(Run& run, std::string_view table, const std::vector<SettableColumn>& known,
                 const std::string& setting) {
  const std::string name = settingName(setting);
  const auto column = std::find_if(known.begin(), known.end(),
                                   [&](const SettableColumn& candidate) { return equalsNoCase(candidate.name, name); });
  if (column == known.end()) {
    const TableDef* definition = run.session.gDB->tableDef(table);
    const bool exists = definition != nullptr && definition->field(name) != nullptr;
    std::string list;
    for (const SettableColumn& candidate : known) list.append(list.empty() ? "" : ", ").append(candidate.name);
    return failure(run, settingFault(exists ? "この列は変更できません." : "指定の列が存在しません.", setting,
                                     "変更できる列 : " + list)) == kDone;
  }
  const std::string fault = column->take(settingValue(setting));
  return fault.empty() || failure(run, settingFault("値が不正です.", setting, fault)) == kDone;
}

}  // namespace

std::string settingName(const std::string& setting) {
  return std::string(trim(std::string_view(setting).substr(0, setting.find('='))));
}

std::string settingValue(const std::string& setting) { return setting.substr(setting.find('=') + 1); }

bool takeSettings(Run& run, std::string_view table, const std::vector<SettableColumn>& known,
                  const std::vector<std::string>& settings) {
  return std::all_of(settings.begin(), settings.end(),
                     [&](const std::string& setting) { return takeSetting(run, table, known, setting); });
}

SettableColumn textColumn(std::string name, TextBox& box) {
  return {std::move(name), [&box](const std::string& value) {
            box.text = value;
            return std::string();
          }};
}

SettableColumn textColumn(std::string name, ComboBox& box) {
  return {std::move(name), [&box](const std::string& value) {
            box.text = value;
            return std::string();
          }};
}

SettableColumn digitsColumn(std::string name, TextBox& box) {
  return {std::move(name), [&box](const std::string& value) {
            const std::string digits(trim(value));
            if (digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos)
              return std::string("9桁以内の数字で指定して下さい.");
            box.text = digits;
            return std::string();
          }};
}

SettableColumn flagColumn(std::string name, CheckBox& box, bool inverted) {
  return {std::move(name), [&box, inverted](const std::string& value) {
            if (value != "0" && value != "-1" && value != "1") return std::string("0 か -1 を指定して下さい.");
            box.value = (value != "0") != inverted;
            return std::string();
          }};
}

SettableColumn entryColumn(std::string name, ComboBox& box, std::function<void()> changed, bool offersNone) {
  return {std::move(name), [&box, changed = std::move(changed), offersNone](const std::string& value) {
            const auto found = std::find_if(box.entries.begin(), box.entries.end(), [&](const std::string& entry) {
              return equalsNoCase(trim(entry), trim(value));
            });
            if (found == box.entries.end() || (trim(value).empty() && !offersNone)) {
              std::string list;
              for (const std::string& entry : box.entries)
                if (!trim(entry).empty()) list.append(list.empty() ? "" : ", ").append(entry);
              return list + " のいずれかを指定して下さい.";
            }
            box.text = *found;
            if (changed) changed();
            return std::string();
          }};
}

}  // namespace quillmarden
