#include "workbook/sheet_read.h"
#include "workbook/xml_values.h"

namespace quillmarden {

namespace {

using Token = XmlScanner::Token;

void readColumns(SheetModel& model, std::string_view xml, std::string_view part) {
  XmlScanner scanner(xml, part);
  for (Token token = scanner.next(); token != Token::Finish; token = scanner.next()) {
    if (token != Token::Start || scanner.local() != "col") continue;
    ColumnSpan span;
    span.first = span.last = 0;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      bool good = true;
      if (name == "min") {
        good = readNumber(value, span.first);
      } else if (name == "max") {
        good = readNumber(value, span.last);
      } else if (name == "width") {
        good = readNumber(value, span.width);
      } else if (name == "style") {
        good = readNumber(value, span.style);
      } else if (name == "customWidth") {
        span.customWidth = isTrue(value);
      } else if (name == "hidden") {
        span.hidden = isTrue(value);
      } else {
        span.otherAttributes += kept(name, value);
      }
      if (!good) scanner.fail("列の指定が正しくありません.");
    }
    const int before = model.columns.empty() ? 0 : model.columns.back().last;
    if (span.first <= before || span.last < span.first || span.last > kMaxSheetColumn)
      scanner.fail("列の指定が正しくありません.");
    model.columns.push_back(std::move(span));
  }
}

void readMerges(SheetModel& model, std::string_view xml, std::string_view part) {
  XmlScanner scanner(xml, part);
  for (Token token = scanner.next(); token != Token::Finish; token = scanner.next()) {
    if (token != Token::Start || scanner.local() != "mergeCell") continue;
    const auto range = parseRange(scanner.attribute("ref").value_or(""));
    if (!range) scanner.fail("結合セルの番地が正しくありません.");
    model.merges.push_back(*range);
  }
}

void readDefaults(SheetModel& model, std::string_view xml, std::string_view part) {
  XmlScanner scanner(xml, part);
  scanner.next();
  if (const auto height = scanner.attribute("defaultRowHeight")) readNumber(*height, model.defaultRowHeight);
  const auto base = scanner.attribute("baseColWidth");
  int digits = 8;
  if (base && readNumber(*base, digits)) model.defaultColumnWidth = digits + 1.140625;
  if (const auto width = scanner.attribute("defaultColWidth")) readNumber(*width, model.defaultColumnWidth);
}

}  // namespace

SheetModel SheetModel::parse(std::string_view xml, std::string_view part, std::size_t texts) {
  SheetModel model;
  model.xml = XmlSections::parse(xml, part, "worksheet", "sheetData",
                                 [&](XmlScanner& scanner) { readSheetData(model, scanner, texts); });
  if (!model.xml.find("sheetData")) model.xml.put("sheetData", "", sheetElementOrder());
  if (const XmlSection* columns = model.xml.find("cols")) readColumns(model, columns->xml, part);
  if (const XmlSection* merges = model.xml.find("mergeCells")) readMerges(model, merges->xml, part);
  if (const XmlSection* format = model.xml.find("sheetFormatPr")) readDefaults(model, format->xml, part);
  return model;
}

}  // namespace quillmarden
