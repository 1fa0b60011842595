#include "workbook/book_state.h"

#include <algorithm>

#include "workbook/formula_shift.h"
#include "workbook/part_name.h"
#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kMainType = "application/vnd.openxmlformats-officedocument.spreadsheetml.";

[[noreturn]] void notAWorkbook(std::string_view part) {
  throw WorkbookError(WorkbookFault::NotAWorkbook, std::string(part), "ブックではありません.");
}

std::string mainPart(const Package& package) {
  const Relationships relationships = package.relationships("");
  const Relationship* main = relationships.byType("officeDocument");
  if (main == nullptr) notAWorkbook("");
  std::string part = resolveTarget("", main->target);
  const std::string_view type = package.contentTypes().typeOf(part);
  if (type.find("sheet.binary") != std::string_view::npos)
    throw WorkbookError(WorkbookFault::OldBinaryForm, part, "バイナリ形式 (.xlsb) のブックです.");
  // A template, a book with macros or an add-in as well, but no text document.
  if (type.find(".main+xml") != std::string_view::npos && !type.starts_with(kMainType) &&
      type.find("ms-excel") == std::string_view::npos)
    notAWorkbook(part);
  return part;
}

/// The part of this kind that the workbook part names; "" when there is none.
std::string partOf(const BookState& book, const Relationships& relationships, std::string_view word) {
  const Relationship* found = relationships.byType(word);
  return found == nullptr ? "" : resolveTarget(book.workbookPart, found->target);
}

std::string xmlOf(const Package& package, std::string_view part) { return xmlAsUtf8(package.bytes(part), part); }

}  // namespace

std::span<const std::string_view> workbookElementOrder() {
  static constexpr std::string_view kOrder[] = {"fileVersion",    "fileSharing",
                                                "workbookPr",     "workbookProtection",
                                                "bookViews",      "sheets",
                                                "functionGroups", "externalReferences",
                                                "definedNames",   "calcPr",
                                                "oleSize",        "customWorkbookViews",
                                                "pivotCaches",    "smartTagPr",
                                                "smartTagTypes",  "webPublishing",
                                                "fileRecoveryPr", "webPublishObjects",
                                                "extLst"};
  return kOrder;
}

std::string xmlAttribute(std::string_view name, std::string_view value) {
  std::string out = " " + std::string(name) + "=\"";
  appendXmlAttribute(out, value);
  return out += '"';
}

std::unique_ptr<BookState> BookState::open(Package package) {
  auto book = std::make_unique<BookState>();
  book->workbookPart = mainPart(package);
  book->package = std::move(package);
  book->readWorkbook();
  book->renewHandles();
  return book;
}

void BookState::readWorkbook() {
  xml = XmlSections::parse(xmlOf(package, workbookPart), workbookPart, "workbook");
  const Relationships relationships = package.relationships(workbookPart);
  styleSheetPart = partOf(*this, relationships, "styles");
  stringsPart = partOf(*this, relationships, "sharedStrings");
  const std::string relation = xml.ensurePrefix("r", kRelationshipsUri, kStrictRelationshipsUri) + ":id";
  const XmlSection* list = xml.find("sheets");
  if (list == nullptr) notAWorkbook(workbookPart);
  XmlScanner scanner(list->xml, workbookPart);
  for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
    if (token != XmlScanner::Token::Start || scanner.local() != "sheet") continue;
    SheetSlot sheet;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "name") {
        sheet.name = xmlDecode(value);
      } else if (name == relation) {
        sheet.relation = xmlDecode(value);
      } else {
        sheet.otherAttributes += xmlAttribute(name, xmlDecode(value));
      }
    }
    const Relationship* target = relationships.byId(sheet.relation);
    if (target == nullptr || target->external) scanner.fail("シート「" + sheet.name + "」の関連がありません.");
    sheet.part = resolveTarget(workbookPart, target->target);
    if (!package.has(sheet.part))
      throw WorkbookError(WorkbookFault::Damaged, sheet.part, "シート「" + sheet.name + "」のデータがありません.");
    for (const SheetSlot& other : slots)
      if (other.part == sheet.part) scanner.fail("2 つのシートが同じデータを指しています.");
    sheet.cells = target->is("worksheet");
    slots.push_back(std::move(sheet));
  }
  if (slots.empty()) notAWorkbook(workbookPart);
  readNames();
}

void BookState::readNames() {
  const XmlSection* list = xml.find("definedNames");
  if (list == nullptr) return;
  XmlScanner scanner(list->xml, workbookPart);
  for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
    if (token != XmlScanner::Token::Start || scanner.local() != "definedName") continue;
    DefinedName defined;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "name") {
        defined.name = xmlDecode(value);
      } else if (name == "localSheetId") {
        const std::string_view digits = value.substr(0, 6);
        defined.sheet = 0;
        for (const char c : digits) defined.sheet = defined.sheet * 10 + (c >= '0' && c <= '9' ? c - '0' : 0);
        if (defined.sheet >= static_cast<int>(slots.size())) scanner.fail("名前のシート番号が正しくありません.");
      } else {
        defined.otherAttributes += xmlAttribute(name, xmlDecode(value));
      }
    }
    defined.formula = scanner.content();
    names.push_back(std::move(defined));
  }
}

std::unique_ptr<BookState> BookState::clone() {
  auto copy = std::make_unique<BookState>();
  copy->package = package;
  copy->workbookPart = workbookPart;
  copy->styleSheetPart = styleSheetPart;
  copy->stringsPart = stringsPart;
  copy->xml = xml;
  copy->names = names;
  copy->sheetsChanged = sheetsChanged;
  copy->namesChanged = namesChanged;
  copy->xmlChanged = xmlChanged;
  copy->stylesChanged = stylesChanged;
  copy->stringsChanged = stringsChanged;
  copy->styleTable = styleTable;
  copy->stringPool = stringPool;
  copy->slots.reserve(slots.size());
  for (const SheetSlot& slot : slots) {
    copy->slots.push_back({slot.name, slot.part, slot.relation, slot.otherAttributes, slot.cells, slot.touched,
                           slot.model, slot.formulas, slot.cutTexts, nullptr});
  }
  copy->renewHandles();
  return copy;
}

void BookState::renewHandles() {
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].handle) {
      slots[i].handle->moveTo(i);
    } else {
      slots[i].handle = std::make_unique<Worksheet>(*this, i);
    }
  }
}

const SheetSlot& BookState::slot(int index) const {
  if (index < 0 || index >= static_cast<int>(slots.size()))
    throw WorkbookError(WorkbookFault::BadValue, "", "シート " + std::to_string(index + 1) + " はありません.");
  return slots[static_cast<std::size_t>(index)];
}

int BookState::find(std::string_view name) const {
  for (std::size_t i = 0; i < slots.size(); ++i)
    if (sameSheet(slots[i].name, name)) return static_cast<int>(i);
  return -1;
}

const StringPool& BookState::strings() const {
  return stringPool.get([&] {
    return package.has(stringsPart) ? StringPool::parse(xmlOf(package, stringsPart), stringsPart) : StringPool();
  });
}

StringPool& BookState::editStrings() {
  if (!stringsChanged) {
    strings();
    makePart(stringsPart, "sharedStrings");
    stringsChanged = true;
  }
  return stringPool.edit([&] { return strings(); });
}

const StyleTable& BookState::styles() const {
  return styleTable.get([&] {
    return package.has(styleSheetPart) ? StyleTable::parse(xmlOf(package, styleSheetPart), styleSheetPart)
                                       : StyleTable::standard("ＭＳ Ｐゴシック", 11);
  });
}

StyleTable& BookState::editStyles() {
  if (!stylesChanged) {
    styles();
    makePart(styleSheetPart, "styles");
    stylesChanged = true;
  }
  return styleTable.edit([&] { return styles(); });
}

/// Makes sure that the book has the part, of which there is one; its bytes come with the writing.
void BookState::makePart(std::string& part, const std::string& word) {
  if (!part.empty() && package.has(part)) return;
  part = package.add(std::string(partFolder(workbookPart)) + word, "xml", std::string(kMainType) + word + "+xml", "");
  package.relate(workbookPart, relationType(word), part);
}

const SheetModel& BookState::model(std::size_t index) const {
  const SheetSlot& sheet = slots[index];
  return sheet.model.get([&] {
    if (!sheet.cells)
      throw WorkbookError(WorkbookFault::BadValue, sheet.part, "シート「" + sheet.name + "」にはセルがありません.");
    return SheetModel::parse(xmlOf(package, sheet.part), sheet.part, strings().size());
  });
}

SheetModel& BookState::editModel(std::size_t index) {
  model(index);
  SheetSlot& sheet = slots[index];
  sheet.touched = true;
  return sheet.model.edit([&]() -> SheetModel { return model(index); });
}

bool BookState::hasFormulas(std::size_t index) const {
  return slots[index].formulas.get([&] {
    const std::string bytes = xmlOf(package, slots[index].part);
    XmlScanner scanner(bytes, slots[index].part);
    for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
      if (token != XmlScanner::Token::Start) continue;
      const std::string_view name = scanner.local();
      if (name == "f" || name.starts_with("formula") || name == "cfvo" || name == "hyperlink") return true;
    }
    return false;
  });
}

bool BookState::countsFrom1904() const {
  const XmlSection* properties = xml.find("workbookPr");
  return properties != nullptr && flag(XmlFragment(properties->xml, workbookPart).root(), "date1904");
}

std::string BookState::relationType(std::string_view word) const {
  const bool strict = xml.head.find(kStrictRelationshipsUri) != std::string::npos;
  return std::string(strict ? kStrictRelationshipsUri : kRelationshipsUri) + "/" + std::string(word);
}

std::string BookState::sheetsXml() const {
  const std::string prefix = xml.prefix();
  XmlSections head = xml;  // the prefix was made sure of when the part was read
  const std::string relation = head.ensurePrefix("r", kRelationshipsUri, kStrictRelationshipsUri) + ":id";
  std::string out = "<" + prefix + "sheets>";
  for (const SheetSlot& sheet : slots)
    out += "<" + prefix + "sheet" + xmlAttribute("name", sheet.name) + sheet.otherAttributes +
           xmlAttribute(relation, sheet.relation) + "/>";
  return out += "</" + prefix + "sheets>";
}

std::string BookState::namesXml() const {
  if (names.empty()) return "";
  const std::string prefix = xml.prefix();
  std::string out = "<" + prefix + "definedNames>";
  for (const DefinedName& name : names) {
    out += "<" + prefix + "definedName" + xmlAttribute("name", name.name);
    if (name.sheet >= 0) out += xmlAttribute("localSheetId", std::to_string(name.sheet));
    out += name.otherAttributes + ">";
    appendXml(out, name.formula);
    out += "</" + prefix + "definedName>";
  }
  return out += "</" + prefix + "definedNames>";
}

/// Whether results that other parts hold may have gone stale: a sheet was touched and there are formulas.
bool BookState::recalculates() const {
  bool touched = false;
  bool formulas = package.relationships(workbookPart).byType("calcChain") != nullptr;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (!slots[i].touched) continue;
    touched = true;
    const auto& specials = model(i).specials;
    formulas = formulas || std::any_of(specials.begin(), specials.end(), [](const SpecialCell& special) {
                 return special.form != SpecialCell::Form::Raw;
               });
  }
  return touched && formulas;
}

std::string BookState::workbookXml(bool recalculate) const {
  XmlSections out = xml;
  const auto order = workbookElementOrder();
  if (sheetsChanged) out.put("sheets", sheetsXml(), order);
  if (namesChanged) {
    const std::string list = namesXml();
    if (list.empty()) {
      out.remove("definedNames");
    } else {
      out.put("definedNames", list, order);
    }
  }
  if (recalculate) {
    const XmlSection* present = out.find("calcPr");
    XmlFragment calculation(present == nullptr ? "<" + xml.prefix() + "calcPr/>" : present->xml, workbookPart);
    setAttribute(calculation.root(), "fullCalcOnLoad", "1");
    out.put("calcPr", calculation.xml(), order);
  }
  return out.xml();
}

Package BookState::finished() const {
  Package out = package;
  const bool recalculate = recalculates();
  if (sheetsChanged || namesChanged || xmlChanged || recalculate) out.set(workbookPart, workbookXml(recalculate));
  if (stylesChanged) out.set(styleSheetPart, styles().xml());
  if (stringsChanged)
    out.stream(
        stringsPart, [this] { return strings().source(); }, strings().xmlSize());
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (!slots[i].touched) continue;
    const SheetModel& sheet = model(i);
    out.stream(
        slots[i].part, [&sheet] { return sheet.source(); }, sheet.xmlSize());
  }
  // The order of calculation names cells that may hold a formula no more; programs make it anew.
  if (!recalculate) return out;
  Relationships relationships = out.relationships(workbookPart);
  if (const Relationship* chain = relationships.byType("calcChain")) {
    out.remove(resolveTarget(workbookPart, chain->target));
    std::erase_if(relationships.items, [](const Relationship& item) { return item.is("calcChain"); });
    out.setRelationships(workbookPart, relationships);
  }
  return out;
}

}  // namespace quillmarden
