#pragma once

#include <string>
#include <string_view>

#include "workbook/sheet_model.h"
#include "workbook/xml_fragment.h"

namespace quillmarden {

/// A child of a sheet's root element as a tree: made when it is missing, and written to its place by put.
class SectionEditor {
 public:
  SectionEditor(SheetModel& model, std::string_view name, const std::string& part)
      : model_(model), name_(name), fragment_(xmlOf(model, name), part) {}
  SectionEditor(const SectionEditor&) = delete;
  SectionEditor& operator=(const SectionEditor&) = delete;

  pugi::xml_node root() const { return fragment_.root(); }
  /// The name with the prefix of the sheet's own elements.
  std::string element(std::string_view name) const { return model_.xml.prefix() + std::string(name); }
  /// The child of this name, appended when it is missing.
  pugi::xml_node child(pugi::xml_node node, std::string_view name) const {
    const pugi::xml_node present = childNamed(node, name);
    return present ? present : node.append_child(element(name).c_str());
  }
  void put() { model_.xml.put(name_, fragment_.xml(), sheetElementOrder()); }

 private:
  static std::string xmlOf(const SheetModel& model, std::string_view name) {
    const XmlSection* section = model.xml.find(name);
    return section != nullptr ? section->xml : "<" + model.xml.prefix() + std::string(name) + "/>";
  }

  SheetModel& model_;
  std::string name_;
  XmlFragment fragment_;
};

}  // namespace quillmarden
