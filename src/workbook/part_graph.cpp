#include "workbook/part_graph.h"

#include <map>
#include <set>
#include <vector>

#include "workbook/part_name.h"

namespace quillmarden {

namespace {

/// "xl/media/image" and "png" of "xl/media/image12.png".
std::pair<std::string, std::string> stemAndExtension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  std::string_view stem = name.substr(0, dot);
  while (!stem.empty() && stem.back() >= '0' && stem.back() <= '9') stem.remove_suffix(1);
  return {std::string(stem), dot == std::string_view::npos ? "bin" : std::string(name.substr(dot + 1))};
}

class GraphCopy {
 public:
  GraphCopy(const Package& source, Package& target, const std::function<bool(const Relationship&)>& keep)
      : source_(source), target_(target), keep_(keep) {}

  void copyRelations(const std::string& from, const std::string& to) {
    copied_[partKey(from)] = to;
    // Parts may refer to each other in a circle; a part that has its copy is not walked again.
    std::vector<std::pair<std::string, std::string>> waiting{{from, to}};
    while (!waiting.empty()) {
      const auto [part, copy] = waiting.back();
      waiting.pop_back();
      Relationships relationships;
      const Relationships present = source_.relationships(part);  // source and target may be one
      for (Relationship item : present.items) {
        if (!keep_(item)) continue;
        if (!item.external) {
          const std::string related = resolveTarget(part, item.target);
          if (!source_.has(related)) continue;
          const bool known = copied_.contains(partKey(related));
          const std::string made = copyPart(related);
          if (!known) waiting.emplace_back(related, made);
          item.target = relativeTarget(copy, made);
        }
        relationships.items.push_back(std::move(item));
      }
      if (!relationships.items.empty()) target_.setRelationships(copy, relationships);
    }
  }

  const std::vector<std::string>& made() const { return made_; }

 private:
  std::string copyPart(const std::string& part) {
    const auto known = copied_.find(partKey(part));
    if (known != copied_.end()) return known->second;
    std::string bytes = source_.bytes(part);
    const std::string type(source_.contentTypes().typeOf(part));
    const bool same = type.starts_with("image/") && target_.has(part) && target_.bytes(part) == bytes;
    std::string name = same ? part : "";
    if (name.empty()) {
      const auto [stem, extension] = stemAndExtension(part);
      made_.push_back(
          name = target_.add(stem, extension, type.empty() ? "application/octet-stream" : type, std::move(bytes)));
    }
    copied_[partKey(part)] = name;
    return name;
  }

  const Package& source_;
  Package& target_;
  const std::function<bool(const Relationship&)>& keep_;
  std::map<std::string, std::string> copied_;
  std::vector<std::string> made_;
};

}  // namespace

void removeUnreached(Package& package) {
  std::set<std::string> reached;
  std::vector<std::string> waiting{""};
  while (!waiting.empty()) {
    const std::string part = waiting.back();
    waiting.pop_back();
    for (const Relationship& item : package.relationships(part).items) {
      if (item.external) continue;
      const std::string related = resolveTarget(part, item.target);
      if (package.has(related) && reached.insert(partKey(related)).second) waiting.push_back(related);
    }
  }
  for (const std::string& name : package.names()) {
    if (name == "[Content_Types].xml" || name.ends_with(".rels") || reached.contains(partKey(name))) continue;
    package.remove(name);
  }
}

std::vector<std::string> copyRelated(const Package& source, std::string_view from, Package& target, std::string_view to,
                                     const std::function<bool(const Relationship&)>& keep) {
  GraphCopy copy(source, target, keep);
  copy.copyRelations(std::string(from), std::string(to));
  return copy.made();
}

}  // namespace quillmarden
