#include "common/settings.h"

#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kAppSection = "APP_SETTING";

std::string formSection(std::string_view form) { return std::string(form) + "_App_Setting"; }

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

void readScreens(const Reader& read, AppSettings& settings) {
  settings.dataBaseFolder = read.text("DataBaseFolder");
  settings.referenceDataBase = read.flag("ReferenceDataBase", false);
  settings.allFileSearch = read.flag("AllFileSearch", false);
  if (const std::string user = read.text("LoninUserName"); !user.empty()) settings.loninUserName = user;
  settings.fontSize2TableList = read.number("FontSize2TableList", 12);
  settings.fontSize2Spread = read.number("FontSize2Spread", 12);
  settings.spreadRowHeightScale = read.number("SpreadRowHeightScale", 1.3);
  settings.detailsFormOpenSize = read.flag("DetailsFormOpenSize", true);
  settings.tableListBoxDblClick = read.flag("TableListBoxDblClick", false);
  for (std::size_t i = 0; i < settings.spreadCopy.size(); ++i)
    settings.spreadCopy[i] = read.flag("SpreadCopy" + std::to_string(i), true);
  settings.spreadCopy2AddRow = read.flag("SpreadCopy2AddRow", true);
  settings.imeControlIsOff = read.flag("IMEControlIsOff", true);
  settings.whereMojiListSystem = read.flag("WhereMojiListSystem", false);
  settings.findMsgOff = read.flag("FindMsgOff", false);
  settings.detailFormRenDataChkIsOn = read.flag("DetailFormRenDataChkIsOn", false);
  // The one switch that is also written as a word.
  settings.tableRefMark = read.flag("TableRefMark", false) || equalsNoCase(read.text("TableRefMark"), "true");
  settings.backColorKey = read.colour("BackColorKEY", settings.backColorKey);
  settings.backColorAdd = read.colour("BackColorADD", settings.backColorAdd);
  settings.backColorTableName = read.colour("BackColorTABLENAME", settings.backColorTableName);
  settings.backColorKeyIndex = read.whole("BackColorKEY_INDEX", settings.backColorKeyIndex);
  settings.backColorAddIndex = read.whole("BackColorADD_INDEX", settings.backColorAddIndex);
  settings.backColorTableNameIndex = read.whole("BackColorTABLENAME_INDEX", settings.backColorTableNameIndex);
  settings.displayTema = read.whole("DisplayTema", settings.displayTema);
}

void readOutput(const Reader& read, AppSettings& settings) {
  settings.createSql2DropSQL = read.flag("CreateSql2DropSQL", true);
  settings.createSql2FkIsPut = read.flag("CreateSql2FkIsPut", true);
  settings.createSql2CommentIsPut = read.flag("CreateSql2CommentIsPut", true);
  settings.createSql2CheckIsPut = read.flag("CreateSql2CheckIsPut", true);
  settings.createSql2StrageIsPut = read.flag("CreateSql2StrageIsPut", true);
  settings.createSql2DefaultIsPut = read.flag("CreateSql2DefaultIsPut", true);
  settings.createSql2BackUpTable = read.flag("CreateSql2BackUpTable", false);
  settings.createSql2Runnable = read.flag("CreateSql2Runnable", false);
  settings.excelObject2SetKage = read.flag("ExcelObject2SetKage", true);
  settings.lowerFieldName = read.flag("LowerFieldName", false);
  constexpr std::string_view kMember[] = {"Comp",      "CompRaku", "Bumon1", "Bumon2",
                                          "Yakusyoku", "Tel",      "Mail",   "Yakuwari"};
  for (std::size_t i = 0; i < settings.putMemberInfo.size(); ++i)
    settings.putMemberInfo[i] = read.flag(std::string("PutMemberInfo").append(kMember[i]), true);
  settings.indexIsReservMoji = read.flag("IndexIsReservMoji", false);
  settings.indexAddRyakuMoji = read.flag("IndexAddRyakuMoji", false);
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

AppSettings readAppSettings(IniFile& ini) {
  const Reader read{ini};
  AppSettings settings;
  readScreens(read, settings);
  readOutput(read, settings);
  if (const auto values = writtenBack(read); !values.empty()) ini.putAll(kAppSection, values);
  return settings;
}

}  // namespace quillmarden
