#include "workbook/legacy_drawing.h"

#include <algorithm>

#include "workbook/xml_scan.h"

namespace quillmarden {
namespace {

/// What a prefix stands for within the element that binds it.
struct Binding {
  std::string_view prefix;
  LegacySpace space;
  std::size_t depth;
};

LegacySpace spaceOf(std::string_view uri) {
  if (uri == "urn:schemas-microsoft-com:vml") return LegacySpace::Vml;
  if (uri == "urn:schemas-microsoft-com:office:office") return LegacySpace::Office;
  return uri == "urn:schemas-microsoft-com:office:excel" ? LegacySpace::Excel : LegacySpace::Other;
}

bool isLegacyBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Takes the next attribute off the front; false at the end or where the text is none.
bool takeAttribute(std::string_view& rest, std::string_view& name, std::string_view& value) {
  while (!rest.empty() && isLegacyBlank(rest.front())) rest.remove_prefix(1);
  const std::size_t equals = rest.find('=');
  if (equals == std::string_view::npos) return false;
  name = rest.substr(0, equals);
  while (!name.empty() && isLegacyBlank(name.back())) name.remove_suffix(1);
  const std::size_t open = rest.find_first_not_of(" \t\r\n", equals + 1);
  if (open == std::string_view::npos || (rest[open] != '"' && rest[open] != '\'')) return false;
  const std::size_t close = rest.find(rest[open], open + 1);
  if (close == std::string_view::npos) return false;
  value = rest.substr(open + 1, close - open - 1);
  rest.remove_prefix(close + 1);
  return true;
}

/// The ">" that ends the tag at `at`, beyond those in quotes; npos when the tag is cut off.
std::size_t closeOfTag(std::string_view vml, std::size_t at) {
  char quote = 0;
  for (; at < vml.size(); ++at) {
    if (quote != 0) {
      if (vml[at] == quote) quote = 0;
    } else if (vml[at] == '"' || vml[at] == '\'') {
      quote = vml[at];
    } else if (vml[at] == '>') {
      return at;
    }
  }
  return std::string_view::npos;
}

class LegacyReader {
 public:
  explicit LegacyReader(std::string_view vml) : vml_(vml) {}

  std::vector<LegacyElement> read() {
    std::size_t at = 0;
    while ((at = vml_.find('<', at)) != std::string_view::npos) {
      const std::string_view rest = vml_.substr(at);
      if (rest.starts_with("<!--")) {
        const std::size_t close = vml_.find("-->", at);
        if (close == std::string_view::npos) break;
        at = close;
        continue;
      }
      const std::size_t close = closeOfTag(vml_, at + 1);
      if (close == std::string_view::npos) break;
      if (rest.starts_with("</")) {
        endTag(at, close);
      } else if (!rest.starts_with("<!") && !rest.starts_with("<?")) {
        startTag(at, close);
      }
      at = close + 1;
    }
    return whole();
  }

 private:
  void startTag(std::size_t open, std::size_t close) {
    std::string_view tag = vml_.substr(open + 1, close - open - 1);
    const bool alone = tag.ends_with('/');
    if (alone) tag.remove_suffix(1);
    const std::size_t nameEnd = std::min(tag.find_first_of(" \t\r\n"), tag.size());
    LegacyElement element;
    element.attributes = tag.substr(nameEnd);
    element.begin = open;
    element.innerBegin = element.innerEnd = close + 1;
    element.end = alone ? close + 1 : 0;
    const std::size_t number = elements_.size();
    element.parent = open_.empty() ? number : open_.back();
    std::string_view attributes = element.attributes;
    std::string_view name;
    std::string_view value;
    while (takeAttribute(attributes, name, value)) {
      if (name == "xmlns") bindings_.push_back({"", spaceOf(value), open_.size()});
      if (name.starts_with("xmlns:")) bindings_.push_back({name.substr(6), spaceOf(value), open_.size()});
    }
    const std::string_view full = tag.substr(0, nameEnd);
    element.name = localName(full);
    element.space = meaningOf(full.substr(0, full.size() - element.name.size()));
    elements_.push_back(element);
    names_.push_back(full);
    if (alone) {
      leave(open_.size());
    } else {
      open_.push_back(number);
    }
  }

  void endTag(std::size_t open, std::size_t close) {
    std::string_view name = vml_.substr(open + 2, close - open - 2);
    while (!name.empty() && isLegacyBlank(name.back())) name.remove_suffix(1);
    const auto named = [&](std::size_t number) { return names_[number] == name; };
    const auto found = std::find_if(open_.rbegin(), open_.rend(), named);
    if (found == open_.rend()) return;
    LegacyElement& element = elements_[*found];
    element.innerEnd = open;
    element.end = close + 1;
    // What was opened since then and never closed ends here, too, without a content of its own.
    open_.resize(static_cast<std::size_t>(open_.rend() - found) - 1);
    leave(open_.size());
  }

  void leave(std::size_t depth) {
    while (!bindings_.empty() && bindings_.back().depth >= depth) bindings_.pop_back();
  }

  LegacySpace meaningOf(std::string_view prefix) const {
    if (prefix.ends_with(':')) prefix.remove_suffix(1);
    const auto found =
        std::find_if(bindings_.rbegin(), bindings_.rend(), [&](const Binding& each) { return each.prefix == prefix; });
    if (found != bindings_.rend()) return found->space;
    // A piece that binds none has the usual ones.
    if (prefix == "v") return LegacySpace::Vml;
    if (prefix == "o") return LegacySpace::Office;
    return prefix == "x" ? LegacySpace::Excel : LegacySpace::Other;
  }

  /// Without the elements that have no end; their children go up to where they stood.
  std::vector<LegacyElement> whole() const {
    std::vector<LegacyElement> made;
    std::vector<std::size_t> places(elements_.size());
    for (std::size_t i = 0; i < elements_.size(); ++i) {
      const LegacyElement& element = elements_[i];
      const bool ended = element.end != 0;
      const std::size_t parent = element.parent == i ? made.size() : places[element.parent];
      places[i] = ended ? made.size() : parent;
      if (!ended) continue;
      made.push_back(element);
      made.back().parent = parent;
    }
    return made;
  }

  std::string_view vml_;
  std::vector<LegacyElement> elements_;
  std::vector<std::string_view> names_;
  std::vector<std::size_t> open_;
  std::vector<Binding> bindings_;
};

}  // namespace

std::vector<LegacyElement> legacyElements(std::string_view vml) { return LegacyReader(vml).read(); }

std::string_view attributeOf(const LegacyElement& element, std::string_view name) {
  std::string_view rest = element.attributes;
  std::string_view each;
  std::string_view value;
  while (takeAttribute(rest, each, value))
    if (each == name) return value;
  return {};
}

}  // namespace quillmarden
