#include "workbook/workbook.h"

#include <algorithm>
#include <fstream>

#include "workbook/book_state.h"
#include "workbook/part_name.h"
#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::string_view kMainNamespace = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kSheetType = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
constexpr std::string_view kWorkbookPart = "xl/workbook.xml";

std::string readBytes(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error))
    throw WorkbookError(WorkbookFault::NotFound, file.string(), "ファイルがありません.");
  if (!std::filesystem::is_regular_file(file, error))
    throw WorkbookError(WorkbookFault::Unreadable, file.string(), "ファイルではありません.");
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) throw WorkbookError(WorkbookFault::Unreadable, file.string(), "ファイルを読めません.");
  if (size > PackageLimits{}.totalBytes)
    throw WorkbookError(WorkbookFault::TooLarge, file.string(), "ファイルが大きくなりすぎます.");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw WorkbookError(WorkbookFault::Unreadable, file.string(), "ファイルを読めません.");
  return bytes;
}

void addStandardPart(Package& package, const std::string& name, std::string_view type, std::string bytes) {
  package.set(name, std::move(bytes));
  package.editContentTypes().setType(name, std::string(kSheetType) + std::string(type) + "+xml");
}

/// The smallest package with one sheet, whose texts and formats are still to come.
Package emptyPackage(const NewBook& look) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
  Package package;
  std::string book = declaration + "<workbook xmlns=\"" + std::string(kMainNamespace) + "\" xmlns:r=\"" +
                     std::string(kRelationshipsUri) + "\"><bookViews><workbookView/></bookViews><sheets><sheet" +
                     xmlAttribute("name", look.sheetName) +
                     " sheetId=\"1\" r:id=\"rId1\"/></sheets><calcPr calcId=\"191029\"/></workbook>";
  addStandardPart(package, std::string(kWorkbookPart), "sheet.main", std::move(book));
  package.relate("", std::string(kOfficeRelation) + "officeDocument", kWorkbookPart);
  const auto add = [&](const std::string& name, std::string_view type, std::string_view word, std::string bytes) {
    addStandardPart(package, name, type, std::move(bytes));
    package.relate(kWorkbookPart, std::string(kOfficeRelation) + std::string(word), name);
  };
  CellFont font;
  font.name = look.fontName;
  font.size = look.fontSize;
  const SheetModel empty = SheetModel::empty(font);
  std::string sheet;
  for (PartSource source = empty.source(); source(sheet);) continue;
  add("xl/worksheets/sheet1.xml", "worksheet", "worksheet", std::move(sheet));
  add("xl/styles.xml", "styles", "styles", StyleTable::standard(look.fontName, look.fontSize).xml());
  add("xl/sharedStrings.xml", "sharedStrings", "sharedStrings",
      declaration + "<sst xmlns=\"" + std::string(kMainNamespace) + "\" uniqueCount=\"0\"/>");
  return package;
}

std::string corePart(const Package& package) {
  const Relationships relationships = package.relationships("");
  const Relationship* core = relationships.byType("core-properties");
  return core == nullptr ? "" : resolveTarget("", core->target);
}

/// A property of the document, its element and the namespace of the element's prefix.
struct PropertyField {
  std::string DocumentProperties::*field;
  const char* element;
  const char* space;
};
constexpr const char* kDublin = "http://purl.org/dc/elements/1.1/";
constexpr const char* kTerms = "http://purl.org/dc/terms/";
constexpr const char* kCore = "http://schemas.openxmlformats.org/package/2006/metadata/core-properties";
constexpr PropertyField kProperties[] = {{&DocumentProperties::title, "dc:title", kDublin},
                                         {&DocumentProperties::creator, "dc:creator", kDublin},
                                         {&DocumentProperties::lastModifiedBy, "cp:lastModifiedBy", kCore},
                                         {&DocumentProperties::created, "dcterms:created", kTerms},
                                         {&DocumentProperties::modified, "dcterms:modified", kTerms}};

/// A new property, which brings its namespaces along: some programs bind them at each element.
pugi::xml_node addProperty(pugi::xml_node root, const PropertyField& property) {
  pugi::xml_node node = root.append_child(property.element);
  const std::string prefix(property.element, std::string_view(property.element).find(':'));
  const std::string binding = "xmlns:" + prefix;
  if (!root.attribute(binding.c_str())) setAttribute(node, binding.c_str(), property.space);
  if (property.space != std::string_view(kTerms)) return node;
  if (!root.attribute("xmlns:xsi")) setAttribute(node, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
  setAttribute(node, "xsi:type", "dcterms:W3CDTF");
  return node;
}

}  // namespace

Workbook::Workbook(std::unique_ptr<BookState> state) : state_(std::move(state)) {}
Workbook::Workbook(Workbook&&) noexcept = default;
Workbook& Workbook::operator=(Workbook&&) noexcept = default;
Workbook::~Workbook() = default;

Workbook Workbook::create(const NewBook& look) {
  checkSheetName(look.sheetName);
  return Workbook(BookState::open(emptyPackage(look)));
}

Workbook Workbook::open(const std::filesystem::path& file) {
  try {
    return fromBytes(readBytes(file));
  } catch (const WorkbookError& error) {
    if (error.part() == file.string()) throw;
    // Which file, and where in it.
    throw WorkbookError(error.fault(), file.string(), error.what());
  }
}

Workbook Workbook::fromBytes(std::string bytes, const PackageLimits& limits) {
  return Workbook(BookState::open(Package::fromBytes(std::move(bytes), limits)));
}

Workbook Workbook::clone() const { return Workbook(state_->clone()); }

int Workbook::sheetCount() const { return static_cast<int>(state_->slots.size()); }

Worksheet& Workbook::sheet(int index) { return *state_->slot(index).handle; }

const Worksheet& Workbook::sheet(int index) const { return *state_->slot(index).handle; }

int Workbook::findSheet(std::string_view name) const { return state_->find(name); }

bool Workbook::isWorksheet(int index) const { return state_->slot(index).cells; }

StyleId Workbook::style(const CellStyle& style) { return state_->editStyles().add(style); }

CellStyle Workbook::styleAt(StyleId id) const { return state_->styles().at(id); }

std::vector<DefinedName> Workbook::definedNames() const { return state_->names; }

void Workbook::setDefinedName(const DefinedName& name) {
  if (name.sheet >= 0) state_->slot(name.sheet);
  state_->namesChanged = true;
  std::erase_if(state_->names,
                [&](const DefinedName& other) { return other.sheet == name.sheet && samePart(other.name, name.name); });
  if (!name.formula.empty()) state_->names.push_back(name);
}

void Workbook::setVisibleRange(const CellRange& range) {
  state_->xml.put("oleSize", "<oleSize ref=\"" + rangeName(range) + "\"/>", workbookElementOrder());
  state_->xmlChanged = true;
}

DocumentProperties Workbook::properties() const {
  DocumentProperties properties;
  const std::string part = corePart(state_->package);
  if (part.empty() || !state_->package.has(part)) return properties;
  const XmlFragment core(xmlAsUtf8(state_->package.bytes(part), part), part);
  for (const PropertyField& property : kProperties)
    properties.*property.field = childNamed(core.root(), localName(std::string_view(property.element))).text().get();
  return properties;
}

void Workbook::setProperties(const DocumentProperties& properties) {
  Package& package = state_->package;
  std::string part = corePart(package);
  if (part.empty() || !package.has(part)) {
    part = "docProps/core.xml";
    package.set(
        part,
        "<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"/>");
    package.editContentTypes().setType(part, "application/vnd.openxmlformats-package.core-properties+xml");
    package.relate("", std::string(kPackageRelation) + "metadata/core-properties", part);
  }
  XmlFragment core(xmlAsUtf8(package.bytes(part), part), part);
  for (const PropertyField& property : kProperties) {
    const std::string& value = properties.*property.field;
    if (value.empty()) continue;
    pugi::xml_node node = childNamed(core.root(), localName(std::string_view(property.element)));
    if (!node) node = addProperty(core.root(), property);
    node.text().set(xmlSafe(value).c_str());
  }
  package.set(part, "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n" + core.xml());
}

void Workbook::makePlain() {
  Package& package = state_->package;
  package.editContentTypes().setType(state_->workbookPart, std::string(kSheetType) + "sheet.main+xml");
  Relationships relationships = package.relationships(state_->workbookPart);
  const auto macros = [](const Relationship& item) { return !item.external && item.is("vbaProject"); };
  if (std::none_of(relationships.items.begin(), relationships.items.end(), macros)) return;
  for (const Relationship& item : relationships.items)
    if (macros(item)) package.remove(resolveTarget(state_->workbookPart, item.target));
  std::erase_if(relationships.items, macros);
  package.setRelationships(state_->workbookPart, relationships);
}

std::string Workbook::bytes() const { return state_->finished().zip(); }

void Workbook::save(const std::filesystem::path& file, const StopCheck& stop) const {
  state_->finished().save(file, stop);
}

}  // namespace quillmarden
