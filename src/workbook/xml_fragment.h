#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace quillmarden {

/// One element of a part as a tree, for the small ones that are changed here and there. Text and attributes come back
/// as they were. Names are asked for without their prefix.
class XmlFragment {
 public:
  /// Throws WorkbookError (Damaged) that names the part.
  XmlFragment(std::string_view xml, std::string_view part);

  pugi::xml_node root() const { return document_.document_element(); }
  std::string xml() const;

 private:
  pugi::xml_document document_;
};

/// The name without its prefix.
std::string_view localName(const pugi::xml_node& node);
/// The first child element of this local name; an empty node when there is none.
pugi::xml_node childNamed(const pugi::xml_node& node, std::string_view name);
/// Sets an attribute, appended when it is new.
void setAttribute(pugi::xml_node node, const char* name, const std::string& value);
/// Whether the attribute says yes; `otherwise` when it is missing.
bool flag(const pugi::xml_node& node, const char* name, bool otherwise = false);

/// Visits an element and all below it.
template <class Visit>
void forEachElement(pugi::xml_node node, const Visit& visit) {
  struct Walker : pugi::xml_tree_walker {
    const Visit& visit;
    explicit Walker(const Visit& wanted) : visit(wanted) {}
    bool for_each(pugi::xml_node& each) override {
      if (each.type() == pugi::node_element) visit(each);
      return true;
    }
  };
  visit(node);
  Walker walker(visit);
  node.traverse(walker);
}

}  // namespace quillmarden
