#include "excel/er_parts.h"

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"

namespace quillmarden {

SizedFont erFont() { return {"ＭＳ Ｐゴシック", 11, false}; }

std::string erSheetName(const frmTBList& list) {
  const std::string first(trim(list.CmbDataBunrui.text));
  const std::string second(trim(list.CmbDataBunrui2.text));
  if (!first.empty() && !second.empty()) return cutSheetName("D分類-" + first + "-" + second);
  if (!first.empty() || !second.empty()) return cutSheetName("D分類-" + first + second);
  const std::string tableClass(trim(list.CmbBunrui.text));
  return tableClass.empty() ? "レイアウト" : cutSheetName("分類-" + tableClass);
}

void setUpErPage(Worksheet& sheet, const DateTime& now, int paper) {
  const std::string today = formatDateTime(now, "yyyy/mm/dd");
  PageSetup page = sheet.pageSetup();
  page.header.right = "作成日:" + today + "\n変更日:" + today;
  page.header.left = "&A";
  page.footer.left = "fileName:&F";
  page.firstPageNumber.reset();
  page.orientation = PageSetup::Orientation::Landscape;
  page.paperSize = paper;
  page.order = PageSetup::Order::DownThenOver;
  page.fitToPage = true;
  page.fitToWidth = 1;
  page.fitToHeight = 1;
  sheet.setPageSetup(page);
}

std::string gFileNameTrim(std::string_view name) {
  std::string trimmed(name);
  for (const std::string_view mark : {"<", ">", "[", "]"}) trimmed = gReplaceAll(trimmed, mark, "");
  return trimmed;
}

std::string erFile(Session& session, Host& host, const BookRun& run, const std::string& bookName,
                   std::string_view ending) {
  SystemRecord system;
  if (!readOutputSystem(session, host, session.gCurrentSystemName, system)) return "";
  std::string name = gFileNameTrim(trim(bookName).empty() ? session.gCurrentSystemName : bookName);
  const std::string path = layoutFile(session, run, system, name.append(ending));
  session.log.gPutLog(host, "CreateFileExcel_ER:" + path);
  if (outputRefused(session, host, path)) return "";
  if (!inUse(path)) return path;
  session.log.gPutLog(host, "指定ファイルは使用中:" + path);
  tellInUse(host, path);
  return "";
}

void noteErError(Session& session, Host& host, const std::exception& error, bool tell) {
  session.log.gPutLog(host, std::string("Error:") + error.what());
  session.log.gPutLog(host, "×:Put Excel ER");
  if (!tell) return;
  gMsgBox(host,
          joinLines({"ExcelObject作成に失敗しました.", std::string(" ") + error.what(), "のエラーがありました."}));
}

}  // namespace quillmarden
