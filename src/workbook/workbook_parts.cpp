#include "workbook/book_state.h"
#include "workbook/part_name.h"
#include "workbook/references.h"
#include "workbook/workbook.h"
#include "workbook/xml_fragment.h"

namespace quillmarden {

namespace {

constexpr std::string_view kVmlType = "application/vnd.openxmlformats-officedocument.vmlDrawing";

/// The part that a sheet's element of this name points at by its relationship; "" when there is none.
std::string partOfElement(const BookState& book, std::size_t index, std::string_view name) {
  const SheetSlot& slot = book.slots[index];
  const XmlSection* section = book.model(index).xml.find(name);
  if (section == nullptr) return "";
  const XmlFragment element(section->xml, slot.part);
  const Relationships relationships = book.package.relationships(slot.part);
  for (const pugi::xml_attribute attribute : element.root().attributes()) {
    if (localName(std::string_view(attribute.name())) != "id") continue;
    const Relationship* item = relationships.byId(attribute.value());
    if (item != nullptr && !item->external) return resolveTarget(slot.part, item->target);
  }
  return "";
}

/// Ties a new part to the sheet and names it in the sheet's element.
void tieToSheet(BookState& book, std::size_t index, std::string_view name, std::string_view word,
                const std::string& part) {
  const std::string id = book.package.relate(book.slots[index].part, book.relationType(word), part);
  XmlSections& xml = book.editModel(index).xml;
  const std::string relation = xml.ensurePrefix("r", kRelationshipsUri, kStrictRelationshipsUri) + ":id";
  xml.put(name, "<" + xml.prefix() + std::string(name) + xmlAttribute(relation, id) + "/>", sheetElementOrder());
}

std::string besideBook(const BookState& book, std::string_view folder) {
  return std::string(partFolder(book.workbookPart)) + std::string(folder);
}

/// What stands before the number in the name of a picture or an embedded book.
std::string mediaStem(const BookState& book, std::string_view extension) {
  const bool picture = usualContentType(extension).starts_with("image/");
  return besideBook(book, picture ? "media/image" : "embeddings/Microsoft_Excel_Sheet");
}

}  // namespace

Package& Workbook::package() { return state_->package; }

const Package& Workbook::package() const { return state_->package; }

std::string Workbook::sheetPart(int index) const { return state_->slot(index).part; }

std::string Workbook::relateSheet(int index, std::string_view type, std::string_view target) {
  return state_->package.relate(state_->slot(index).part, type, target);
}

std::string Workbook::drawingPart(int index) {
  state_->slot(index);
  const auto sheet = static_cast<std::size_t>(index);
  std::string part = partOfElement(*state_, sheet, "drawing");
  if (!part.empty()) return part;
  part = state_->package.add(besideBook(*state_, "drawings/drawing"), "xml",
                             "application/vnd.openxmlformats-officedocument.drawing+xml",
                             "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                             "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/"
                             "spreadsheetDrawing\" xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\">"
                             "</xdr:wsDr>");
  tieToSheet(*state_, sheet, "drawing", "drawing", part);
  return part;
}

std::string Workbook::legacyDrawingPart(int index) const {
  state_->slot(index);
  return partOfElement(*state_, static_cast<std::size_t>(index), "legacyDrawing");
}

std::string Workbook::setLegacyDrawing(int index, std::string xml) {
  std::string part = legacyDrawingPart(index);
  if (!part.empty()) {
    state_->package.set(part, std::move(xml));
    return part;
  }
  part = state_->package.add(besideBook(*state_, "drawings/vmlDrawing"), "vml", kVmlType, std::move(xml));
  tieToSheet(*state_, static_cast<std::size_t>(index), "legacyDrawing", "vmlDrawing", part);
  return part;
}

std::string Workbook::addMedia(std::string bytes, std::string_view extension) {
  const std::string stem = mediaStem(*state_, extension);
  for (const std::string& name : state_->package.names())
    if (name.starts_with(stem) && name.ends_with("." + std::string(extension)) &&
        state_->package.sameBytes(name, bytes))
      return name;
  return state_->package.add(stem, extension, "", std::move(bytes));
}

std::string Workbook::addMedia(std::function<std::string()> make, std::string_view extension) {
  constexpr std::uint64_t kAbout = 1U << 20;
  Package& package = state_->package;
  const std::string name = package.add(mediaStem(*state_, extension), extension, "", "");
  const auto once = [make = std::move(make)]() -> PartSource {
    return [make, given = false](std::string& out) mutable {
      if (given) return false;
      given = true;
      out += make();
      return true;
    };
  };
  package.stream(name, once, kAbout);
  return name;
}

}  // namespace quillmarden
