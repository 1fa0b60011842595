#include "workbook/styles.h"

#include <algorithm>

#include "workbook/number_format.h"
#include "workbook/styles_xml.h"
#include "workbook/workbook_error.h"
#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kOrder[] = {"numFmts",    "fonts", "fills",       "borders", "cellStyleXfs", "cellXfs",
                                       "cellStyles", "dxfs",  "tableStyles", "colors",  "extLst"};
constexpr std::size_t kMaxFormats = 65000;
constexpr int kFirstOwnNumberFormat = 164;

/// The named styles that a book need not bring along.
struct CommonStyle {
  std::string_view name;
  int builtin;
  int numberFormat;
};
constexpr CommonStyle kCommon[] = {{"Comma", 3, 40}, {"Percent", 5, 9}, {"Comma [0]", 6, 38}};

const CommonStyle* commonStyle(std::string_view name) {
  const auto found = std::find_if(std::begin(kCommon), std::end(kCommon),
                                  [&](const CommonStyle& style) { return style.name == name; });
  return found == std::end(kCommon) ? nullptr : found;
}

template <class Record, class Make>
void readList(const XmlSections& xml, std::string_view part, std::string_view list, std::vector<Record>& records,
              const Make& make) {
  const XmlSection* section = xml.find(list);
  if (section == nullptr) return;
  const XmlFragment fragment(section->xml, part);
  for (const pugi::xml_node& node : fragment.root().children())
    if (node.type() == pugi::node_element) records.push_back(make(node));
}

template <class Record, class Xml>
void number(std::unordered_map<std::string, int>& numbers, const std::vector<Record>& records, const Xml& xml) {
  for (std::size_t i = 0; i < records.size(); ++i) numbers.emplace(xml(records[i]), static_cast<int>(i));
}

template <class Record>
const Record& pick(const std::vector<Record>& records, int index) {
  static const Record kNone{};
  return index >= 0 && static_cast<std::size_t>(index) < records.size() ? records[static_cast<std::size_t>(index)]
                                                                        : kNone;
}

}  // namespace

StyleTable StyleTable::parse(std::string_view xml, std::string_view part) {
  StyleTable table;
  table.part_ = part;
  table.xml_ = XmlSections::parse(xml, part, "styleSheet");
  table.read();
  return table;
}

StyleTable StyleTable::standard(std::string_view fontName, double fontSize) {
  CellFont font;
  font.name = fontName;
  font.size = fontSize;
  const bool japanese = std::any_of(fontName.begin(), fontName.end(), [](char c) { return c < 0; });
  if (japanese) font.charset = 128;
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
      "<fonts count=\"1\">" +
      fontXml(font, "") +
      "</fonts><fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
      "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
      "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
      "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>"
      "<cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/></cellXfs>"
      "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
      "<dxfs count=\"0\"/><tableStyles count=\"0\"/></styleSheet>";
  return parse(xml, "xl/styles.xml");
}

void StyleTable::read() {
  readList(xml_, part_, "fonts", fonts_, fontOf);
  readList(xml_, part_, "fills", fills_, fillOf);
  readList(xml_, part_, "borders", borders_, borderOf);
  readList(xml_, part_, "cellStyleXfs", baseFormats_, formatOf);
  readList(xml_, part_, "cellXfs", formats_, formatOf);
  std::vector<std::pair<int, std::string>> codes;
  readList(xml_, part_, "numFmts", codes, [](const pugi::xml_node& node) {
    return std::pair(node.attribute("numFmtId").as_int(), std::string(node.attribute("formatCode").value()));
  });
  numberFormats_.insert(codes.begin(), codes.end());
  readList(xml_, part_, "cellStyles", named_, [](const pugi::xml_node& node) {
    return NamedStyle{node.attribute("name").value(), node.attribute("xfId").as_int(),
                      node.attribute("builtinId").as_int(-1)};
  });
  if (formats_.empty()) addTo("cellXfs", formatNumbers_, 0, formatXml(formats_.emplace_back(), {}, 0, prefix()));
  const std::string before = prefix();
  number(fontNumbers_, fonts_, [&](const CellFont& font) { return fontXml(font, before); });
  number(fillNumbers_, fills_, [&](const CellFill& fill) { return fillXml(fill, before); });
  number(borderNumbers_, borders_, [&](const CellBorder& border) { return borderXml(border, before); });
  number(formatNumbers_, formats_, [&](const StoredFormat& format) {
    return formatXml(format, pick(baseFormats_, format.base), format.base, before);
  });
}

std::string StyleTable::numberFormat(int id) const {
  const auto own = numberFormats_.find(id);
  if (own != numberFormats_.end()) return own->second == "General" ? "" : own->second;
  return std::string(builtinNumberFormat(id));
}

CellStyle StyleTable::at(StyleId id) const {
  const StoredFormat& format = formats_[id < formats_.size() ? id : 0];
  CellStyle style;
  style.font = pick(fonts_, format.font);
  style.fill = pick(fills_, format.fill);
  style.border = pick(borders_, format.border);
  style.alignment = format.alignment;
  style.numberFormat = numberFormat(format.numberFormat);
  style.quotePrefix = format.quotePrefix;
  style.pivotButton = format.pivotButton;
  style.locked = format.locked;
  style.hidden = format.hidden;
  if (format.base != 0)
    for (const NamedStyle& candidate : named_)
      if (candidate.format == format.base) style.named = candidate.name;
  return style;
}

int StyleTable::addTo(std::string_view list, std::unordered_map<std::string, int>& known, std::size_t size,
                      std::string xml) {
  const auto [place, added] = known.emplace(std::move(xml), static_cast<int>(size));
  if (added) {
    Growth& growth = growth_[std::string(list)];
    growth.xml += place->first;
    ++growth.count;
  }
  return place->second;
}

int StyleTable::addFont(const CellFont& font) {
  const int number = addTo("fonts", fontNumbers_, fonts_.size(), fontXml(font, prefix()));
  if (static_cast<std::size_t>(number) == fonts_.size()) fonts_.push_back(font);
  return number;
}

int StyleTable::addFill(const CellFill& fill) {
  const int number = addTo("fills", fillNumbers_, fills_.size(), fillXml(fill, prefix()));
  if (static_cast<std::size_t>(number) == fills_.size()) fills_.push_back(fill);
  return number;
}

int StyleTable::addBorder(const CellBorder& border) {
  const int number = addTo("borders", borderNumbers_, borders_.size(), borderXml(border, prefix()));
  if (static_cast<std::size_t>(number) == borders_.size()) borders_.push_back(border);
  return number;
}

int StyleTable::addNumberFormat(const std::string& code) {
  for (const auto& [id, known] : numberFormats_)
    if (known == code) return id;
  if (const int builtin = builtinNumberFormatId(code); builtin >= 0) return builtin;
  const int id = numberFormats_.empty() ? kFirstOwnNumberFormat
                                        : std::max(kFirstOwnNumberFormat, numberFormats_.rbegin()->first + 1);
  numberFormats_.emplace(id, code);
  Growth& growth = growth_["numFmts"];
  growth.xml += "<" + prefix() + "numFmt numFmtId=\"" + std::to_string(id) + "\" formatCode=\"";
  appendXmlAttribute(growth.xml, code);
  growth.xml += "\"/>";
  ++growth.count;
  return id;
}

const NamedStyle* StyleTable::named(std::string_view name) const {
  const CommonStyle* common = commonStyle(name);
  for (const NamedStyle& style : named_)
    // A program of another language has its own name for a common style.
    if (style.name == name || (common != nullptr && style.builtin == common->builtin)) return &style;
  return nullptr;
}

int StyleTable::addNamed(const std::string& name) {
  if (name.empty()) return 0;
  if (const NamedStyle* known = named(name)) return known->format;
  const CommonStyle* common = commonStyle(name);
  if (common == nullptr)
    throw WorkbookError(WorkbookFault::BadValue, "", "セルのスタイル「" + name + "」はありません.");
  StoredFormat format = pick(baseFormats_, 0);
  format.numberFormat = common->numberFormat;
  const int number = static_cast<int>(baseFormats_.size());
  Growth& formats = growth_["cellStyleXfs"];
  formats.xml += formatXml(format, format, -1, prefix());
  ++formats.count;
  Growth& names = growth_["cellStyles"];
  names.xml += "<" + prefix() + "cellStyle name=\"" + name + "\" xfId=\"" + std::to_string(number) + "\" builtinId=\"" +
               std::to_string(common->builtin) + "\"/>";
  ++names.count;
  baseFormats_.push_back(format);
  named_.push_back({name, number, common->builtin});
  return number;
}

bool StyleTable::isText(StyleId id) const {
  return id < formats_.size() && numberFormat(formats_[id].numberFormat) == "@";
}

bool StyleTable::isDate(StyleId id) const {
  return id < formats_.size() && showsDates(numberFormat(formats_[id].numberFormat));
}

CellStyle StyleTable::basedOn(CellStyle style, std::string_view name) const {
  const NamedStyle* known = named(name);
  const CommonStyle* common = commonStyle(name);
  if (known == nullptr && common == nullptr)
    throw WorkbookError(WorkbookFault::BadValue, "", "セルのスタイル「" + std::string(name) + "」はありません.");
  style.named = known != nullptr ? known->name : std::string(name);
  style.numberFormat = known != nullptr ? numberFormat(pick(baseFormats_, known->format).numberFormat)
                                        : std::string(builtinNumberFormat(common->numberFormat));
  return style;
}

/// A font without a name is that of the default format.
CellFont StyleTable::withDefaultName(CellFont font) const {
  const CellFont& standard = pick(fonts_, formats_.front().font);
  font.name = standard.name;
  font.family = standard.family;
  font.charset = standard.charset;
  font.scheme = standard.scheme;
  return font;
}

StyleId StyleTable::add(const CellStyle& style) {
  StoredFormat format;
  format.base = addNamed(style.named);
  format.font = addFont(style.font.name.empty() ? withDefaultName(style.font) : style.font);
  format.fill = addFill(style.fill);
  format.border = addBorder(style.border);
  format.numberFormat = addNumberFormat(style.numberFormat);
  format.alignment = style.alignment;
  format.quotePrefix = style.quotePrefix;
  format.pivotButton = style.pivotButton;
  format.locked = style.locked;
  format.hidden = style.hidden;
  const std::string xml = formatXml(format, pick(baseFormats_, format.base), format.base, prefix());
  const int number = addTo("cellXfs", formatNumbers_, formats_.size(), xml);
  if (static_cast<std::size_t>(number) == formats_.size()) {
    if (formats_.size() >= kMaxFormats)
      throw WorkbookError(WorkbookFault::BadValue, "", "セルの書式の種類が多すぎます.");
    formats_.push_back(format);
  }
  return static_cast<StyleId>(number);
}

std::vector<std::string> StyleTable::differences() const {
  std::vector<std::string> all;
  const auto collect = [&](const std::string& list) {
    XmlScanner scanner(list, part_);
    scanner.next();
    for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
      if (token != XmlScanner::Token::Start || scanner.local() != "dxf") continue;
      const std::size_t begin = scanner.begin();
      scanner.skip();
      all.push_back(list.substr(begin, scanner.end() - begin));
    }
  };
  if (const XmlSection* section = xml_.find("dxfs")) collect(section->xml);
  const auto grown = growth_.find("dxfs");
  if (grown != growth_.end()) collect("<" + prefix() + "dxfs>" + grown->second.xml + "</" + prefix() + "dxfs>");
  return all;
}

int StyleTable::addDifference(const std::string& xml) {
  const std::vector<std::string> known = differences();
  const auto found = std::find(known.begin(), known.end(), xml);
  if (found != known.end()) return static_cast<int>(found - known.begin());
  Growth& growth = growth_["dxfs"];
  growth.xml += xml;
  ++growth.count;
  return static_cast<int>(known.size());
}

std::string StyleTable::xml() const {
  XmlSections xml = xml_;
  for (const auto& [list, growth] : growth_) {
    const XmlSection* section = xml.find(list);
    std::string tag = "<" + prefix() + list + "/>";
    std::string inner;
    std::size_t count = growth.count;
    if (section != nullptr) {
      XmlScanner scanner(section->xml, part_);
      scanner.next();
      tag = section->xml.substr(0, scanner.end());
      if (!scanner.selfClosing()) inner = section->xml.substr(tag.size(), section->xml.rfind("</") - tag.size());
      for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
        if (token != XmlScanner::Token::Start) continue;
        ++count;
        scanner.skip();
      }
    }
    if (tag.ends_with("/>")) tag.erase(tag.size() - 2, 1);
    xml.put(list,
            withAttribute(tag, "count", std::to_string(count)) + inner + growth.xml + "</" + prefix() + list + ">",
            kOrder);
  }
  return xml.xml();
}

}  // namespace quillmarden
