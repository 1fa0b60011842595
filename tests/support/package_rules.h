#pragma once

#include <algorithm>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "workbook/sheet_model.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// Looks a written workbook over for what makes a spreadsheet program offer a repair: parts without a type or a way to
/// them, relationships that lead nowhere, elements out of order, numbers of texts and formats that are not there,
/// cells out of order, merged ranges that overlap, names twice. Written apart from the writer, on a plain XML tree.
class PackageRules {
 public:
  explicit PackageRules(const std::string& bytes) : package_(Package::fromBytes(bytes)) { run(); }

  /// The faults found, one a line; empty for a good book.
  const std::string& faults() const { return faults_; }

 private:
  void fault(const std::string& part, const std::string& text) { faults_ += part + ": " + text + "\n"; }

  pugi::xml_document load(const std::string& part) {
    pugi::xml_document document;
    const std::string bytes = package_.bytes(part);
    if (!document.load_buffer(bytes.data(), bytes.size(), pugi::parse_full)) fault(part, "no XML");
    return document;
  }

  /// XML holds neither control characters nor U+FFFE, U+FFFF, surrogates and bytes that are no UTF-8.
  void checkCharacters(const std::string& part) {
    const std::string bytes = package_.bytes(part);
    for (std::size_t at = 0; at < bytes.size();) {
      const Utf8Step step = utf8At(bytes, at);
      const char32_t character = step.character;
      const bool control = character < 0x20 && character != U'\t' && character != U'\n' && character != U'\r';
      if (!step.valid || control || character == 0xFFFE || character == 0xFFFF)
        return fault(part, "no XML character at " + std::to_string(at));
      at += step.size;
    }
  }

  void run() {
    for (const std::string& name : package_.names())
      if (name.ends_with(".xml") || name.ends_with(".rels") || name.ends_with(".vml")) checkCharacters(name);
    std::set<std::string> reached;
    walk("", reached);
    for (const std::string& name : package_.names()) {
      if (name == "[Content_Types].xml" || name.ends_with(".rels")) continue;
      if (package_.contentTypes().typeOf(name).empty()) fault(name, "no content type");
      if (!reached.contains(name)) fault(name, "no relationship leads here");
    }
    for (const auto& [part, type] : package_.contentTypes().overrides)
      if (!package_.has(part)) fault(part, "a content type without a part");
    const pugi::xml_document styles = load("xl/styles.xml");
    checkStyles(styles.document_element());
    if (package_.has("xl/sharedStrings.xml")) texts_ = count(load("xl/sharedStrings.xml").document_element(), "si");
    checkBook();
  }

  void walk(const std::string& part, std::set<std::string>& reached) {
    for (const Relationship& item : package_.relationships(part).items) {
      if (item.external) continue;
      const std::string target = resolveTarget(part, item.target);
      if (!package_.has(target)) fault(part, "relationship " + item.id + " leads to no part: " + target);
      if (reached.insert(target).second) walk(target, reached);
    }
  }

  static std::string_view local(const pugi::xml_node& node) {
    const std::string_view name(node.name());
    return name.substr(name.find(':') == std::string_view::npos ? 0 : name.find(':') + 1);
  }

  static std::size_t count(const pugi::xml_node& node, std::string_view name) {
    return static_cast<std::size_t>(
        std::count_if(node.begin(), node.end(), [&](const pugi::xml_node& child) { return local(child) == name; }));
  }

  static pugi::xml_node child(const pugi::xml_node& node, std::string_view name) {
    for (const pugi::xml_node candidate : node.children())
      if (local(candidate) == name) return candidate;
    return {};
  }

  void checkStyles(const pugi::xml_node& root) {
    std::map<std::string, std::size_t> sizes;
    for (const pugi::xml_node list : root.children()) {
      const auto elements = std::count_if(list.begin(), list.end(),
                                          [](const pugi::xml_node& node) { return node.type() == pugi::node_element; });
      sizes[std::string(local(list))] = static_cast<std::size_t>(elements);
      if (list.attribute("count") && list.attribute("count").as_llong() != elements && local(list) != "colors")
        fault("styles", std::string(list.name()) + " has a wrong count");
    }
    formats_ = sizes["cellXfs"];
    differences_ = sizes["dxfs"];
    const std::pair<const char*, const char*> references[] = {
        {"fontId", "fonts"}, {"fillId", "fills"}, {"borderId", "borders"}, {"xfId", "cellStyleXfs"}};
    for (const pugi::xml_node format : child(root, "cellXfs").children())
      for (const auto& [attribute, list] : references)
        if (format.attribute(attribute).as_uint() >= sizes[list]) fault("styles", std::string("wrong ") + attribute);
  }

  void checkBook() {
    const std::string part = "xl/workbook.xml";
    const pugi::xml_document document = load(part);
    const Relationships relationships = package_.relationships(part);
    std::set<std::string> names;
    std::set<std::string> ids;
    int sheets = 0;
    for (const pugi::xml_node sheet : child(document.document_element(), "sheets").children()) {
      if (sheet.type() != pugi::node_element) continue;
      ++sheets;
      if (!names.insert(sheet.attribute("name").value()).second) fault(part, "two sheets of one name");
      if (!ids.insert(sheet.attribute("sheetId").value()).second) fault(part, "two sheets of one id");
      const Relationship* item = relationships.byId(sheet.attribute("r:id").value());
      if (item == nullptr) {
        fault(part, "a sheet without its part");
      } else if (item->is("worksheet")) {
        checkSheet(resolveTarget(part, item->target));
      }
    }
    std::set<std::string> defined;
    for (const pugi::xml_node name : child(document.document_element(), "definedNames").children()) {
      if (name.type() != pugi::node_element) continue;
      const std::string key =
          name.attribute("name").value() + std::string("!") + name.attribute("localSheetId").value();
      if (!defined.insert(key).second) fault(part, "a name twice: " + key);
      if (name.attribute("localSheetId").as_int(0) >= sheets) fault(part, "a name of no sheet");
      if (name.text().empty()) fault(part, "an empty name: " + key);
    }
    const auto active = child(child(document.document_element(), "bookViews"), "workbookView").attribute("activeTab");
    if (active.as_int() >= sheets) fault(part, "no such active sheet");
  }

  void checkSheet(const std::string& part) {
    const pugi::xml_document document = load(part);
    const pugi::xml_node root = document.document_element();
    const auto order = sheetElementOrder();
    std::size_t last = 0;
    for (const pugi::xml_node element : root.children()) {
      if (element.type() != pugi::node_element || local(element) == "AlternateContent") continue;
      const auto place = std::find(order.begin(), order.end(), local(element)) - order.begin();
      if (static_cast<std::size_t>(place) < last) fault(part, std::string(element.name()) + " is out of order");
      last = static_cast<std::size_t>(place);
    }
    checkRows(part, child(root, "sheetData"));
    checkMerges(part, child(root, "mergeCells"));
    const Relationships relationships = package_.relationships(part);
    for (const pugi::xpath_node found : document.select_nodes("//@*[local-name()='id' and name()!='id']")) {
      const std::string_view name(found.attribute().name());
      if (name.starts_with("r") && !relationships.byId(found.attribute().value()))
        fault(part, std::string("no relationship ") + found.attribute().value());
    }
    for (const pugi::xpath_node found : document.select_nodes("//@dxfId"))
      if (found.attribute().as_uint() >= differences_) fault(part, "no such dxfId");
  }

  void checkRows(const std::string& part, const pugi::xml_node& data) {
    int lastRow = 0;
    for (const pugi::xml_node row : data.children()) {
      if (row.type() != pugi::node_element) continue;
      const int number = row.attribute("r").as_int(lastRow + 1);
      if (number <= lastRow || number > kMaxSheetRow) fault(part, "row out of order: " + std::to_string(number));
      lastRow = number;
      if (row.attribute("s").as_uint() >= formats_) fault(part, "a row of no format");
      int lastColumn = 0;
      for (const pugi::xml_node cell : row.children()) {
        if (cell.type() != pugi::node_element) continue;
        const auto at = parseCell(cell.attribute("r").value());
        if (!at || at->row != number || at->column <= lastColumn) {
          fault(part, std::string("cell out of order: ") + cell.attribute("r").value());
          continue;
        }
        lastColumn = at->column;
        if (cell.attribute("s").as_uint() >= formats_) fault(part, "a cell of no format: " + cellName(*at));
        const bool text = std::string_view(cell.attribute("t").value()) == "s";
        if (text && child(cell, "v").text().as_ullong(texts_) >= texts_)
          fault(part, "a cell of no text: " + cellName(*at));
      }
    }
  }

  void checkMerges(const std::string& part, const pugi::xml_node& merges) {
    std::vector<CellRange> ranges;
    for (const pugi::xml_node merge : merges.children()) {
      const auto range = parseRange(merge.attribute("ref").value());
      if (!range || range->first == range->last) {
        fault(part, std::string("no merged range: ") + merge.attribute("ref").value());
        continue;
      }
      for (const CellRange& other : ranges)
        if (other.meets(*range)) fault(part, "merged ranges overlap: " + rangeName(*range));
      ranges.push_back(*range);
    }
    if (merges && ranges.empty()) fault(part, "an empty list of merged ranges");
  }

  Package package_;
  std::string faults_;
  std::size_t formats_ = 0;
  std::size_t differences_ = 0;
  std::size_t texts_ = 0;
};

/// "" for a book that a spreadsheet program opens without a repair.
inline std::string packageFaults(const Workbook& book) { return PackageRules(book.bytes()).faults(); }

}  // namespace quillmarden
