#include "common/settings.h"

#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kAppSection = "APP_SETTING";

std::string formSection(std::string_view form) {
  return form.empty() ? "AppSetting" : std::string(form) + "_App_Setting";
}

/// Reads the keys of one section with the defaults that stand in for what is missing or odd.
struct Reader {
  const IniFile& ini;

  std::string text(std::string_view key) const { return gGetAppSetting(ini, key); }
  double number(std::string_view key, double byDefault) const {
    const std::string value = text(key);
    return isNumeric(value) ? gStr2Double(value) : byDefault;
  }
  int whole(std::string_view key, int byDefault) const {
    const double value = number(key, byDefault);
    return value >= -1e9 && value <= 1e9 ? static_cast<int>(value) : byDefault;
  }
  Colour colour(std::string_view key, Colour byDefault) const {
    const double value = number(key, byDefault);
    return value >= 0 && value <= 0xFFFFFF ? static_cast<Colour>(value) : byDefault;
  }
  bool flag(std::string_view key, bool byDefault) const {
    const std::string value = text(key);
    return value.empty() ? byDefault : gVal(value) == 1;
  }
};

constexpr SwitchKey kSwitches[] = {
    {"DetailsFormOpenSize", &AppSettings::detailsFormOpenSize},
    {"TableListBoxDblClick", &AppSettings::tableListBoxDblClick},
    {"SpreadCopy2AddRow", &AppSettings::spreadCopy2AddRow},
    {"IMEControlIsOff", &AppSettings::imeControlIsOff},
    {"WhereMojiListSystem", &AppSettings::whereMojiListSystem},
    {"FindMsgOff", &AppSettings::findMsgOff},
    {"DetailFormRenDataChkIsOn", &AppSettings::detailFormRenDataChkIsOn},
    {"TableRefMark", &AppSettings::tableRefMark},
    {"CreateSql2DropSQL", &AppSettings::createSql2DropSQL},
    {"CreateSql2FkIsPut", &AppSettings::createSql2FkIsPut},
    {"CreateSql2CommentIsPut", &AppSettings::createSql2CommentIsPut},
    {"CreateSql2CheckIsPut", &AppSettings::createSql2CheckIsPut},
    {"CreateSql2StrageIsPut", &AppSettings::createSql2StrageIsPut},
    {"CreateSql2DefaultIsPut", &AppSettings::createSql2DefaultIsPut},
    {"CreateSql2BackUpTable", &AppSettings::createSql2BackUpTable},
    {"CreateSql2Runnable", &AppSettings::createSql2Runnable},
    {"CreateSql2RunnableUtf8", &AppSettings::createSql2RunnableUtf8},
    {"ExcelObject2SetKage", &AppSettings::excelObject2SetKage},
    {"LowerFieldName", &AppSettings::lowerFieldName},
    {"IndexIsReservMoji", &AppSettings::indexIsReservMoji},
    {"IndexAddRyakuMoji", &AppSettings::indexAddRyakuMoji},
};

constexpr std::string_view kMemberColumns[] = {"Comp",      "CompRaku", "Bumon1", "Bumon2",
                                               "Yakusyoku", "Tel",      "Mail",   "Yakuwari"};

constexpr ColourKey kColours[] = {
    {"KEY", &AppSettings::backColorKey, &AppSettings::backColorKeyIndex},
    {"ADD", &AppSettings::backColorAdd, &AppSettings::backColorAddIndex},
    {"TABLENAME", &AppSettings::backColorTableName, &AppSettings::backColorTableNameIndex},
};

struct NumberKey {
  std::string_view key;
  double AppSettings::*setting;
};
constexpr NumberKey kNumbers[] = {
    {"FontSize2TableList", &AppSettings::fontSize2TableList},
    {"FontSize2Spread", &AppSettings::fontSize2Spread},
    {"SpreadRowHeightScale", &AppSettings::spreadRowHeightScale},
};

std::string spreadCopyKey(std::size_t column) { return "SpreadCopy" + std::to_string(column); }
std::string memberKey(std::size_t column) { return std::string("PutMemberInfo").append(kMemberColumns[column]); }
std::string colourKey(const ColourKey& colour) { return std::string("BackColor").append(colour.word); }
std::string colourIndexKey(const ColourKey& colour) { return colourKey(colour) + "_INDEX"; }

void readLogIn(const Reader& read, AppSettings& settings) {
  settings.dataBaseFolder = read.text("DataBaseFolder");
  settings.referenceDataBase = read.flag("ReferenceDataBase", false);
  settings.allFileSearch = read.flag("AllFileSearch", false);
  if (const std::string user = read.text("LoninUserName"); !user.empty()) settings.loninUserName = user;
}

void readOptions(const Reader& read, AppSettings& settings) {
  for (const SwitchKey& key : kSwitches) settings.*key.setting = read.flag(key.key, settings.*key.setting);
  // The one switch that is also written as a word.
  if (equalsNoCase(read.text("TableRefMark"), "true")) settings.tableRefMark = true;
  for (const NumberKey& key : kNumbers) settings.*key.setting = read.number(key.key, settings.*key.setting);
  for (const ColourKey& key : kColours) {
    settings.*key.colour = read.colour(colourKey(key), settings.*key.colour);
    settings.*key.index = read.whole(colourIndexKey(key), settings.*key.index);
  }
  for (std::size_t i = 0; i < settings.spreadCopy.size(); ++i)
    settings.spreadCopy[i] = read.flag(spreadCopyKey(i), true);
  for (std::size_t i = 0; i < settings.putMemberInfo.size(); ++i)
    settings.putMemberInfo[i] = read.flag(memberKey(i), true);
  settings.displayTema = read.whole("DisplayTema", settings.displayTema);
}

/// The keys that reappear when they are missing.
std::vector<std::pair<std::string, std::string>> writtenBack(const Reader& read) {
  std::vector<std::pair<std::string, std::string>> values;
  if (read.text("SpreadRowHeightScale").empty()) values.emplace_back("SpreadRowHeightScale", "1.3");
  if (read.text("TableListBoxDblClick").empty()) values.emplace_back("TableListBoxDblClick", "1");
  // It is the other key that takes this default: users rely on the detail screen's size coming back with it.
  if (read.text("SpreadCopy2AddRow").empty()) values.emplace_back("DetailsFormOpenSize", "1");
  return values;
}

}  // namespace

std::string gGetAppSetting(const IniFile& ini, std::string_view key) { return ini.get(kAppSection, key); }

void putAppSetting(IniFile& ini, std::string_view key, std::string_view value) { ini.put(kAppSection, key, value); }

std::string gGetFormSetting(const IniFile& ini, std::string_view form, std::string_view key) {
  return ini.get(formSection(form), key);
}

void putFormSetting(IniFile& ini, std::string_view form, std::string_view key, std::string_view value) {
  ini.put(formSection(form), key, value);
}

std::span<const SwitchKey> optionSwitches() { return kSwitches; }
std::span<const ColourKey> optionColours() { return kColours; }
std::span<const std::string_view> memberColumns() { return kMemberColumns; }

AppSettings readAppSettings(IniFile& ini) {
  const Reader read{ini};
  AppSettings settings;
  readLogIn(read, settings);
  readOptions(read, settings);
  if (const auto values = writtenBack(read); !values.empty()) ini.putAll(kAppSection, values);
  return settings;
}

void putOptions(IniFile& ini, const AppSettings& settings) {
  std::vector<std::pair<std::string, std::string>> values;
  const auto put = [&](std::string key, std::string value) { values.emplace_back(std::move(key), std::move(value)); };
  const auto putSwitch = [&](std::string key, bool on) { put(std::move(key), on ? "1" : "0"); };
  for (const SwitchKey& key : kSwitches) putSwitch(std::string(key.key), settings.*key.setting);
  for (const NumberKey& key : kNumbers) put(std::string(key.key), plainNumber(settings.*key.setting));
  for (const ColourKey& key : kColours) {
    put(colourKey(key), std::to_string(settings.*key.colour));
    put(colourIndexKey(key), std::to_string(settings.*key.index));
  }
  for (std::size_t i = 0; i < settings.spreadCopy.size(); ++i) putSwitch(spreadCopyKey(i), settings.spreadCopy[i]);
  for (std::size_t i = 0; i < settings.putMemberInfo.size(); ++i) putSwitch(memberKey(i), settings.putMemberInfo[i]);
  put("DisplayTema", std::to_string(settings.displayTema));
  ini.putAll(kAppSection, values);
}

}  // namespace quillmarden
