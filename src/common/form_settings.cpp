#include "common/form_settings.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/settings.h"
#include "common/text.h"

namespace quillmarden {
namespace {

constexpr std::string_view kPositions = "FORM_SETTING";
constexpr double kFarthest = 100'000;  ///< beyond any display

std::string positionKey(std::string_view form, std::string_view what) { return std::string(form).append(what); }

std::optional<int> readNumber(const IniFile& ini, std::string_view form, std::string_view what, double least) {
  const std::string text = ini.get(kPositions, positionKey(form, what));
  const double number = gVal(text);
  if (!isNumeric(text) || number < least || number > kFarthest) return std::nullopt;
  return static_cast<int>(number);
}

bool isOn(std::string_view state) { return gVal(state) != 0 || equalsNoCase(state, "True"); }

struct StateOf {
  std::string operator()(const TextBox* box) const { return box->text; }
  std::string operator()(const Label* label) const { return std::string(trim(label->caption)); }
  std::string operator()(const CheckBox* box) const { return box->value ? "1" : "0"; }
  std::string operator()(const OptionButton* button) const { return button->value ? "1" : "0"; }
  std::string operator()(const ComboBox* box) const { return box->text; }
  std::string operator()(const MenuItem* item) const { return item->checked ? "1" : "0"; }
  std::string operator()(const ListBox* list) const { return std::string(list->text()); }
};

struct SetState {
  std::string_view state;
  bool listedOnly;

  void operator()(TextBox* box) const { box->text = state; }
  void operator()(Label* label) const { label->caption = std::string(" ").append(state) + " "; }
  void operator()(CheckBox* box) const { box->value = isOn(state); }
  void operator()(OptionButton* button) const { button->value = isOn(state); }
  void operator()(ComboBox* box) const {
    const bool listed = std::find(box->entries.begin(), box->entries.end(), state) != box->entries.end();
    if (listed || !listedOnly) box->text = state;
  }
  void operator()(MenuItem* item) const { item->checked = isOn(state); }
  void operator()(ListBox* list) const {
    const auto found = std::find(list->rows.begin(), list->rows.end(), state);
    if (found == list->rows.end()) return;
    list->listIndex = static_cast<int>(found - list->rows.begin());
    list->selected.assign(list->rows.size(), false);
    list->selected[static_cast<std::size_t>(list->listIndex)] = true;
  }
};

}  // namespace

FormPosition gFormPosition(const IniFile& ini, std::string_view form) {
  FormPosition position;
  const std::string state = ini.get(kPositions, positionKey(form, "_WINDOWSTATE"));
  if (state == "2") position.windowState = FormPosition::kMaximised;
  position.top = readNumber(ini, form, "_TOP", -kFarthest);
  position.left = readNumber(ini, form, "_LEFT", -kFarthest);
  position.width = readNumber(ini, form, "_WIDTH", 1);
  position.height = readNumber(ini, form, "_HEIGHT", 1);
  return position;
}

void putFormPosition(IniFile& ini, std::string_view form, const FormPosition& position, bool sizable) {
  std::vector<std::pair<std::string, std::string>> values;
  const auto put = [&](std::string_view what, const std::optional<int>& number) {
    if (number) values.emplace_back(positionKey(form, what), std::to_string(*number));
  };
  put("_WINDOWSTATE", position.windowState);
  if (position.windowState == FormPosition::kNormal) {
    put("_TOP", position.top);
    put("_LEFT", position.left);
    if (sizable) {
      put("_WIDTH", position.width);
      put("_HEIGHT", position.height);
    }
  }
  ini.putAll(kPositions, values);
}

std::string controlKey(std::string_view control, int index) {
  std::string key(control);
  return index < 0 ? key : key + ":" + std::to_string(index);
}

std::string controlState(ControlRef control) { return std::visit(StateOf{}, control); }

void gControlSetting(const IniFile& ini, std::string_view form, std::string_view key, ControlRef control,
                     bool listedOnly) {
  const std::string state = gGetFormSetting(ini, form, key);
  if (!state.empty()) std::visit(SetState{state, listedOnly}, control);
}

void putControlSetting(IniFile& ini, std::string_view form, std::string_view key, ControlRef control) {
  const std::string state = controlState(control);
  if (gGetFormSetting(ini, form, key) != state) putFormSetting(ini, form, key, state);
}

}  // namespace quillmarden
