#include "workbook/page_setup_xml.h"

#include "workbook/section_editor.h"
#include "workbook/workbook_error.h"
#include "workbook/xml_text.h"
#include "workbook/xml_values.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMaxHeader = 255;

/// An element's attributes; none when the sheet lacks the element.
XmlFragment sectionOf(const SheetModel& model, std::string_view name, const std::string& part) {
  const XmlSection* section = model.xml.find(name);
  return XmlFragment(section != nullptr ? section->xml : "<none/>", part);
}

void setOrRemove(pugi::xml_node node, const char* name, const std::string& value, bool wanted) {
  if (wanted) {
    setAttribute(node, name, value);
  } else {
    node.remove_attribute(name);
  }
}

void writeOptions(SheetModel& sheet, const PageSetup& setup, const std::string& part) {
  SectionEditor options(sheet, "printOptions", part);
  setOrRemove(options.root(), "horizontalCentered", "1", setup.centerHorizontally);
  setOrRemove(options.root(), "verticalCentered", "1", setup.centerVertically);
  setOrRemove(options.root(), "gridLines", "1", setup.gridLines);
  if (options.root().first_attribute()) {
    options.put();
  } else {
    sheet.xml.remove("printOptions");
  }
}

void writeMargins(SheetModel& sheet, const PageSetup& setup, const std::string& part) {
  SectionEditor margins(sheet, "pageMargins", part);
  const std::pair<const char*, double> sides[] = {{"left", setup.marginLeft},     {"right", setup.marginRight},
                                                  {"top", setup.marginTop},       {"bottom", setup.marginBottom},
                                                  {"header", setup.marginHeader}, {"footer", setup.marginFooter}};
  for (const auto& [side, inches] : sides) setAttribute(margins.root(), side, numberText(inches));
  margins.put();
}

void writePage(SheetModel& sheet, const PageSetup& setup, const std::string& part) {
  SectionEditor page(sheet, "pageSetup", part);
  const pugi::xml_node root = page.root();
  const auto number = [&](const char* name, int value, bool wanted) {
    setOrRemove(root, name, std::to_string(value), wanted);
  };
  number("paperSize", setup.paperSize, setup.paperSize != 0);
  number("scale", setup.zoom, setup.zoom != 100);
  number("firstPageNumber", setup.firstPageNumber.value_or(1), setup.firstPageNumber.has_value());
  number("fitToWidth", setup.fitToWidth, setup.fitToWidth != 1);
  number("fitToHeight", setup.fitToHeight, setup.fitToHeight != 1);
  setOrRemove(root, "pageOrder", "overThenDown", setup.order == PageSetup::Order::OverThenDown);
  setOrRemove(root, "orientation", setup.orientation == PageSetup::Orientation::Landscape ? "landscape" : "portrait",
              setup.orientation != PageSetup::Orientation::Default);
  setOrRemove(root, "useFirstPageNumber", "1", setup.firstPageNumber.has_value());
  if (root.first_attribute()) {
    page.put();
  } else {
    sheet.xml.remove("pageSetup");
  }
}

void writeHeaders(SheetModel& sheet, const PageSetup& setup, const std::string& part) {
  SectionEditor texts(sheet, "headerFooter", part);
  const std::string header = joinHeader(setup.header);
  const std::string footer = joinHeader(setup.footer);
  pugi::xml_node root = texts.root();
  root.remove_child(childNamed(root, "oddHeader"));
  root.remove_child(childNamed(root, "oddFooter"));
  // They stand before the texts of even and first pages.
  const auto put = [&](const char* name, const std::string& text) {
    if (!text.empty()) root.prepend_child(texts.element(name).c_str()).text().set(xmlSafe(text).c_str());
  };
  put("oddFooter", footer);
  put("oddHeader", header);
  texts.put();
}

}  // namespace

PageSetup readPageSetup(const SheetModel& sheet, const std::string& part) {
  PageSetup setup;
  const XmlFragment properties = sectionOf(sheet, "sheetPr", part);
  setup.fitToPage = flag(childNamed(properties.root(), "pageSetUpPr"), "fitToPage");
  const XmlFragment options = sectionOf(sheet, "printOptions", part);
  setup.centerHorizontally = flag(options.root(), "horizontalCentered");
  setup.centerVertically = flag(options.root(), "verticalCentered");
  setup.gridLines = flag(options.root(), "gridLines");
  const XmlFragment margins = sectionOf(sheet, "pageMargins", part);
  const auto margin = [&](const char* name, double& value) { value = margins.root().attribute(name).as_double(value); };
  margin("left", setup.marginLeft);
  margin("right", setup.marginRight);
  margin("top", setup.marginTop);
  margin("bottom", setup.marginBottom);
  margin("header", setup.marginHeader);
  margin("footer", setup.marginFooter);
  const XmlFragment page = sectionOf(sheet, "pageSetup", part);
  const pugi::xml_node root = page.root();
  const std::string_view orientation = root.attribute("orientation").value();
  if (orientation == "landscape") setup.orientation = PageSetup::Orientation::Landscape;
  if (orientation == "portrait") setup.orientation = PageSetup::Orientation::Portrait;
  setup.paperSize = root.attribute("paperSize").as_int(0);
  setup.zoom = root.attribute("scale").as_int(100);
  setup.fitToWidth = root.attribute("fitToWidth").as_int(1);
  setup.fitToHeight = root.attribute("fitToHeight").as_int(1);
  if (flag(root, "useFirstPageNumber")) setup.firstPageNumber = root.attribute("firstPageNumber").as_int(1);
  if (std::string_view(root.attribute("pageOrder").value()) == "overThenDown")
    setup.order = PageSetup::Order::OverThenDown;
  const XmlFragment texts = sectionOf(sheet, "headerFooter", part);
  setup.header = splitHeader(childNamed(texts.root(), "oddHeader").text().get());
  setup.footer = splitHeader(childNamed(texts.root(), "oddFooter").text().get());
  return setup;
}

void writePageSetup(SheetModel& sheet, const PageSetup& before, const PageSetup& setup, const std::string& part) {
  if (setup.fitToPage != before.fitToPage) {
    SectionEditor properties(sheet, "sheetPr", part);
    setOrRemove(properties.child(properties.root(), "pageSetUpPr"), "fitToPage", "1", setup.fitToPage);
    properties.put();
  }
  writeOptions(sheet, setup, part);
  writeMargins(sheet, setup, part);
  writePage(sheet, setup, part);
  if (setup.header != before.header || setup.footer != before.footer) writeHeaders(sheet, setup, part);
}

void checkPageSetup(const PageSetup& setup) {
  const auto bad = [](const char* what) {
    throw WorkbookError(WorkbookFault::BadValue, "", std::string("ページ設定の") + what + "が正しくありません.");
  };
  if (setup.zoom < 10 || setup.zoom > 400) bad("拡大率");
  if (setup.fitToWidth < 0 || setup.fitToWidth > 32767 || setup.fitToHeight < 0 || setup.fitToHeight > 32767)
    bad("ページ数");
  if (setup.paperSize < 0 || setup.paperSize > 118) bad("用紙サイズ");
  for (const double margin : {setup.marginLeft, setup.marginRight, setup.marginTop, setup.marginBottom,
                              setup.marginHeader, setup.marginFooter})
    if (!(margin >= 0 && margin < 49)) bad("余白");
  if (utf16Length(joinHeader(setup.header)) > kMaxHeader) bad("ヘッダー");
  if (utf16Length(joinHeader(setup.footer)) > kMaxHeader) bad("フッター");
}

}  // namespace quillmarden
