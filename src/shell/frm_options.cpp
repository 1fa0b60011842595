#include "shell/frm_options.h"

#include <algorithm>
#include <iterator>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"

namespace quillmarden {
namespace {

constexpr std::string_view kListGroup = "テーブルリスト";
constexpr std::string_view kGrid = "項目の画面";
constexpr std::string_view kSql = "SQL文の出力";
constexpr std::string_view kIndex = "インデックス名";
constexpr std::string_view kBook = "Excelの出力";

constexpr OptionLine kLines[] = {
    {"TableListBoxDblClick", kListGroup, "ダブルクリックで別の詳細画面を開く"},
    {"WhereMojiListSystem", kListGroup, "検索条件の履歴をシステムごとに保存する"},
    {"FindMsgOff", kListGroup, "検索の前に確認しない"},
    {"TableRefMark", kListGroup, "参照テーブルを < > で囲む(オフのときは [ ])"},
    {"DetailFormRenDataChkIsOn", kGrid, "テーブルを切り替えるとき、未保存の変更を確認する"},
    {"DetailsFormOpenSize", kGrid, "別に開いた詳細画面の大きさを固定する"},
    {"SpreadCopy2AddRow", kGrid, "最終行を超える貼り付けで行を追加する"},
    {"IMEControlIsOff", kGrid, "セルの移動で日本語入力をオフにする"},
    {"LowerFieldName", kGrid, "項目名(物理)を小文字で登録する"},
    {"CreateSql2DropSQL", kSql, "DROP文を出力する"},
    {"CreateSql2FkIsPut", kSql, "外部参照(FK)を出力する"},
    {"CreateSql2CommentIsPut", kSql, "コメントを出力する"},
    {"CreateSql2CheckIsPut", kSql, "CHECK制約を出力する"},
    {"CreateSql2StrageIsPut", kSql, "記憶領域(STORAGE)を出力する"},
    {"CreateSql2DefaultIsPut", kSql, "初期値(DEFAULT)を出力する"},
    {"CreateSql2BackUpTable", kSql, "テーブルのバックアップを出力する"},
    {"CreateSql2Runnable", kSql, "実行可能形式で出力する"},
    {"CreateSql2RunnableUtf8", kSql, "実行可能形式をUTF-8で出力する(オフのときはCP932)"},
    {"IndexIsReservMoji", kIndex, "英数字、「-」、「_」だけを使う"},
    {"IndexAddRyakuMoji", kIndex, "テーブルの略名を付ける"},
    {"ExcelObject2SetKage", kBook, "図形に影を付ける"},
};

/// The first columns of the grid; the end of a range goes with its beginning.
constexpr std::string_view kSpreadCopies[] = {"日本語項目名 (論理)",
                                              "項目名 (物理)",
                                              "Key",
                                              "型",
                                              "整数桁数",
                                              "少数桁数",
                                              "長さ",
                                              "NULL値",
                                              "個人情報",
                                              "項目分類",
                                              "値リスト",
                                              "備考",
                                              "初期値",
                                              "Domain名",
                                              "DomainID",
                                              "範囲分類",
                                              "範囲開始・終了"};
constexpr std::string_view kMembers[] = {"会社", "会社略称", "部門1", "部門2", "役職", "電話", "メール", "役割"};
constexpr std::string_view kColourCaptions[] = {"キー項目", "追加項目", "テーブル名"};
/// The place of each is what the setting holds.
constexpr std::string_view kThemes[] = {"クラシック", "XP", "Windows 10/11"};

constexpr double kSmallestFont = 6, kLargestFont = 72;
constexpr double kSmallestScale = 1, kLargestScale = 5;

bool AppSettings::*memberOf(std::string_view key) {
  const auto switches = optionSwitches();
  return std::find_if(switches.begin(), switches.end(), [&](const SwitchKey& found) { return found.key == key; })
      ->setting;
}

const ColourKey& colourOf(int which) { return optionColours()[static_cast<std::size_t>(which)]; }

/// The number in a box, when it is one between the limits.
bool takeNumber(const TextBox& box, double least, double most, double& number) {
  const double typed = gVal(trim(box.text));
  if (!isNumeric(box.text) || typed < least || typed > most) return false;
  number = typed;
  return true;
}

bool refuse(Host& host, frmOptions& screen, std::string_view control, std::string_view text) {
  gMsgBox(host, text, kOkOnly | kWarningIcon, "入力確認");
  screen.focus = control;
  return false;
}

/// Takes the typed numbers. False after the message of the first that is none.
bool takeNumbers(Host& host, frmOptions& screen, AppSettings& settings) {
  constexpr std::string_view kFontFault = "文字の大きさは、6 から 72 までの数値で指定して下さい.";
  if (!takeNumber(screen.TxtFontSize2TableList, kSmallestFont, kLargestFont, settings.fontSize2TableList))
    return refuse(host, screen, "TxtFontSize2TableList", kFontFault);
  if (!takeNumber(screen.TxtFontSize2Spread, kSmallestFont, kLargestFont, settings.fontSize2Spread))
    return refuse(host, screen, "TxtFontSize2Spread", kFontFault);
  if (!takeNumber(screen.TxtSpreadRowHeightScale, kSmallestScale, kLargestScale, settings.spreadRowHeightScale))
    return refuse(host, screen, "TxtSpreadRowHeightScale", "行の高さの倍率は、1 から 5 までの数値で指定して下さい.");
  return true;
}

void takeSwitches(const frmOptions& screen, AppSettings& settings) {
  for (std::size_t i = 0; i < std::size(kLines) && i < screen.ChkOption.size(); ++i)
    settings.*memberOf(kLines[i].key) = screen.ChkOption[i].value;
  for (std::size_t i = 0; i < settings.spreadCopy.size(); ++i) settings.spreadCopy[i] = screen.ChkSpreadCopy[i].value;
  for (std::size_t i = 0; i < settings.putMemberInfo.size(); ++i)
    settings.putMemberInfo[i] = screen.ChkPutMemberInfo[i].value;
  const auto theme = std::find(std::begin(kThemes), std::end(kThemes), screen.CmbDisplayTema.text);
  if (theme != std::end(kThemes)) settings.displayTema = static_cast<int>(theme - std::begin(kThemes));
}

}  // namespace

std::span<const OptionLine> optionLines() { return kLines; }
std::span<const std::string_view> spreadCopyCaptions() { return kSpreadCopies; }
std::span<const std::string_view> memberCaptions() { return kMembers; }
std::span<const std::string_view> optionColourCaptions() { return kColourCaptions; }

void frmOptions_Load(Session& session, Host& /*host*/, frmOptions& screen) {
  screen = {};
  const AppSettings settings = screen.settings = readAppSettings(*session.ini);
  screen.TxtFontSize2TableList.text = plainNumber(settings.fontSize2TableList);
  screen.TxtFontSize2Spread.text = plainNumber(settings.fontSize2Spread);
  screen.TxtSpreadRowHeightScale.text = plainNumber(settings.spreadRowHeightScale);
  screen.CmbDisplayTema.entries.assign(std::begin(kThemes), std::end(kThemes));
  const auto theme = static_cast<std::size_t>(settings.displayTema);
  screen.CmbDisplayTema.text = kThemes[std::min(theme, std::size(kThemes) - 1)];
  for (const OptionLine& line : kLines) screen.ChkOption.push_back({settings.*memberOf(line.key)});
  for (std::size_t i = 0; i < settings.spreadCopy.size(); ++i) screen.ChkSpreadCopy[i].value = settings.spreadCopy[i];
  for (std::size_t i = 0; i < settings.putMemberInfo.size(); ++i)
    screen.ChkPutMemberInfo[i].value = settings.putMemberInfo[i];
  for (int which = 0; which < kOptionColours; ++which)
    setOptionColour(screen, which, settings.*colourOf(which).index, settings.*colourOf(which).colour);
}

int optionColourIndex(const frmOptions& screen, int which) {
  return which < 0 || which >= kOptionColours ? 0 : screen.settings.*colourOf(which).index;
}

void setOptionColour(frmOptions& screen, int which, int index, Colour colour) {
  if (which < 0 || which >= kOptionColours) return;
  screen.settings.*colourOf(which).index = index;
  screen.settings.*colourOf(which).colour = colour;
  screen.lblBackColor[static_cast<std::size_t>(which)].backColour = colour;
}

bool cmdOK_Click(Session& session, Host& host, frmOptions& screen) {
  AppSettings settings = screen.settings;
  if (!takeNumbers(host, screen, settings)) return false;
  takeSwitches(screen, settings);
  putOptions(*session.ini, settings);
  session.settings = readAppSettings(*session.ini);
  screen.saved = screen.unloaded = true;
  return true;
}

void cmdCancel_Click(Session& /*session*/, Host& /*host*/, frmOptions& screen) { screen.unloaded = true; }

}  // namespace quillmarden
