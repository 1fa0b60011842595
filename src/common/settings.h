#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "common/ini_file.h"
#include "screen/controls.h"

namespace quillmarden {

// The per-user settings in tableinf.ini.

/// One key of "APP_SETTING", "" when absent.
std::string gGetAppSetting(const IniFile& ini, std::string_view key);
void putAppSetting(IniFile& ini, std::string_view key, std::string_view value);
/// One key of a form's own section `<form>_App_Setting`, or of "AppSetting" for no form.
std::string gGetFormSetting(const IniFile& ini, std::string_view form, std::string_view key);
void putFormSetting(IniFile& ini, std::string_view form, std::string_view key, std::string_view value);

/// Switches that are all on.
template <std::size_t count>
constexpr std::array<bool, count> allOn() {
  std::array<bool, count> switches{};
  switches.fill(true);
  return switches;
}

/// The settings that hold a number or a switch, with their defaults applied. Reading writes back the keys
/// that are to reappear.
struct AppSettings {
  std::string dataBaseFolder;  ///< "" stands for the program's folder
  bool referenceDataBase = false;
  bool allFileSearch = false;
  std::string loninUserName = "admin";
  double fontSize2TableList = 12;
  double fontSize2Spread = 12;
  double spreadRowHeightScale = 1.3;
  bool detailsFormOpenSize = true;
  bool tableListBoxDblClick = false;
  /// Which grid columns a copy of rows takes.
  std::array<bool, 17> spreadCopy = allOn<17>();
  bool spreadCopy2AddRow = true;
  bool imeControlIsOff = true;
  bool whereMojiListSystem = false;
  bool findMsgOff = false;
  bool detailFormRenDataChkIsOn = false;
  bool tableRefMark = false;  ///< false "[" and "]", true "<" and ">"
  Colour backColorKey = 12632319;
  Colour backColorAdd = 16761087;
  Colour backColorTableName = 65535;
  int backColorKeyIndex = 38;
  int backColorAddIndex = 39;
  int backColorTableNameIndex = 6;
  // what SQL generation emits
  bool createSql2DropSQL = true;
  bool createSql2FkIsPut = true;
  bool createSql2CommentIsPut = true;
  bool createSql2CheckIsPut = true;
  bool createSql2StrageIsPut = true;
  bool createSql2DefaultIsPut = true;
  bool createSql2BackUpTable = false;
  bool createSql2Runnable = false;     ///< the form that a server takes as it stands
  bool createSql2RunnableUtf8 = true;  ///< that form's encoding: UTF-8, or CP932
  bool excelObject2SetKage = true;
  bool lowerFieldName = false;
  std::array<bool, 8> putMemberInfo = allOn<8>();  ///< Comp, CompRaku, Bumon1, Bumon2, Yakusyoku, Tel, Mail, Yakuwari
  int displayTema = 2;
  bool indexIsReservMoji = false;
  bool indexAddRyakuMoji = false;
};

/// A key that holds a switch.
struct SwitchKey {
  std::string_view key;
  bool AppSettings::*setting;
};
/// The switches of the options screen; those of grid columns and of member columns are numbered lists beside them.
std::span<const SwitchKey> optionSwitches();
/// A grid colour and its index in the workbook palette, behind the same word.
struct ColourKey {
  std::string_view word;
  Colour AppSettings::*colour;
  int AppSettings::*index;
};
/// The colours that the options screen lets choose: key fields, added fields, table names.
std::span<const ColourKey> optionColours();
/// The word behind PutMemberInfo for each member column: "Comp" and so on.
std::span<const std::string_view> memberColumns();

/// The settings of the file. What is missing, or no number where one is due, has its default.
AppSettings readAppSettings(IniFile& ini);
/// Writes what the options screen keeps, with one rewrite of the file. The login's own choices are not among it.
void putOptions(IniFile& ini, const AppSettings& settings);

}  // namespace quillmarden
