#include "workbook/styles_xml.h"

#include <charconv>

#include "workbook/xml_fragment.h"
#include "workbook/xml_text.h"
#include "workbook/xml_values.h"

namespace quillmarden {

namespace {

// The words of the format for each value of an enumeration, in its order.
constexpr std::string_view kPatterns[] = {
    "none",           "solid",        "gray125",  "gray0625",  "mediumGray",  "darkGray",    "lightGray",
    "darkHorizontal", "darkVertical", "darkDown", "darkUp",    "darkGrid",    "darkTrellis", "lightHorizontal",
    "lightVertical",  "lightDown",    "lightUp",  "lightGrid", "lightTrellis"};
constexpr std::string_view kLines[] = {"none",         "thin",          "medium",     "thick",
                                       "hair",         "dotted",        "dashed",     "mediumDashed",
                                       "dashDot",      "mediumDashDot", "dashDotDot", "mediumDashDotDot",
                                       "slantDashDot", "double"};
constexpr std::string_view kHorizontal[] = {"general", "left",    "center",           "right",
                                            "fill",    "justify", "centerContinuous", "distributed"};
constexpr std::string_view kVertical[] = {"bottom", "top", "center", "justify", "distributed"};
constexpr std::string_view kUnderlines[] = {"none", "single", "double", "singleAccounting", "doubleAccounting"};
constexpr std::string_view kScripts[] = {"baseline", "superscript", "subscript"};

template <class Enum, std::size_t N>
Enum enumOf(const std::string_view (&words)[N], std::string_view word) {
  for (std::size_t i = 0; i < N; ++i)
    if (words[i] == word) return static_cast<Enum>(i);
  return Enum{};
}

template <class Enum, std::size_t N>
std::string_view wordOf(const std::string_view (&words)[N], Enum value) {
  return words[static_cast<std::size_t>(value)];
}

CellColor colorOf(const pugi::xml_node& node) {
  if (!node) return {};
  CellColor color;
  color.tint = node.attribute("tint").as_double(0);
  if (const auto rgb = node.attribute("rgb")) {
    color.kind = CellColor::Kind::Rgb;
    const std::string_view text(rgb.value());
    std::from_chars(text.data(), text.data() + text.size(), color.value, 16);
  } else if (const auto theme = node.attribute("theme")) {
    color.kind = CellColor::Kind::Theme;
    color.value = theme.as_uint();
  } else if (const auto indexed = node.attribute("indexed")) {
    color.kind = CellColor::Kind::Indexed;
    color.value = indexed.as_uint();
  } else if (flag(node, "auto")) {
    color.kind = CellColor::Kind::Automatic;
  }
  return color;
}

std::string attribute(std::string_view name, std::string_view value) {
  std::string out = " " + std::string(name) + "=\"";
  appendXmlAttribute(out, value);
  return out += '"';
}

std::string colorXml(const CellColor& color, std::string_view element) {
  if (color.kind == CellColor::Kind::None) return "";
  std::string out = "<" + std::string(element);
  switch (color.kind) {
    case CellColor::Kind::Rgb: {
      constexpr std::string_view kDigits = "0123456789ABCDEF";
      std::string rgb;
      for (int shift = 28; shift >= 0; shift -= 4) rgb += kDigits[(color.value >> shift) & 15];
      out += attribute("rgb", rgb);
      break;
    }
    case CellColor::Kind::Theme:
      out += attribute("theme", std::to_string(color.value));
      break;
    case CellColor::Kind::Indexed:
      out += attribute("indexed", std::to_string(color.value));
      break;
    default:
      out += attribute("auto", "1");
  }
  if (color.tint != 0) out += attribute("tint", numberText(color.tint));
  return out += "/>";
}

/// "<b/>" and its kin: without a value they mean yes.
bool toggle(const pugi::xml_node& node, std::string_view name) {
  const pugi::xml_node child = childNamed(node, name);
  return child && flag(child, "val", true);
}

BorderLine lineOf(const pugi::xml_node& border, std::string_view name, std::string_view strictName) {
  pugi::xml_node node = childNamed(border, name);
  if (!node) node = childNamed(border, strictName);
  BorderLine line;
  line.kind = enumOf<LineKind>(kLines, node.attribute("style").value());
  line.color = colorOf(childNamed(node, "color"));
  return line;
}

/// Elements of one record, each with the part's prefix.
class ElementWriter {
 public:
  explicit ElementWriter(std::string_view prefix) : prefix_(prefix) {}

  void value(std::string_view name, std::string_view value) {
    out_ += "<" + prefix_ + std::string(name) + attribute("val", value) + "/>";
  }
  void toggle(std::string_view name, bool on) {
    if (on) out_ += "<" + prefix_ + std::string(name) + "/>";
  }
  void color(std::string_view name, const CellColor& color) { out_ += colorXml(color, prefix_ + std::string(name)); }
  void line(std::string_view name, const BorderLine& line) {
    const std::string element = prefix_ + std::string(name);
    out_ += "<" + element;
    if (line.kind == LineKind::None) {
      out_ += "/>";
      return;
    }
    out_ += attribute("style", wordOf(kLines, line.kind)) + ">" + colorXml(line.color, prefix_ + "color") + "</" +
            element + ">";
  }
  std::string within(std::string_view name, const std::string& attributes = "") const {
    const std::string element = prefix_ + std::string(name);
    if (out_.empty()) return "<" + element + attributes + "/>";
    return "<" + element + attributes + ">" + out_ + "</" + element + ">";
  }

 private:
  std::string prefix_;
  std::string out_;
};

std::string alignmentXml(const CellAlignment& alignment, std::string_view prefix) {
  std::string out;
  const auto number = [&](std::string_view name, int value) {
    if (value != 0) out += attribute(name, std::to_string(value));
  };
  if (alignment.horizontal != HorizontalAlign::General)
    out += attribute("horizontal", wordOf(kHorizontal, alignment.horizontal));
  if (alignment.vertical != VerticalAlign::Bottom) out += attribute("vertical", wordOf(kVertical, alignment.vertical));
  number("textRotation", alignment.rotation);
  number("wrapText", alignment.wrap ? 1 : 0);
  number("indent", alignment.indent);
  number("relativeIndent", alignment.relativeIndent);
  number("justifyLastLine", alignment.justifyLastLine ? 1 : 0);
  number("shrinkToFit", alignment.shrink ? 1 : 0);
  number("readingOrder", alignment.readingOrder);
  return out.empty() ? out : "<" + std::string(prefix) + "alignment" + out + "/>";
}

}  // namespace

CellFont fontOf(const pugi::xml_node& node) {
  CellFont font;
  const auto value = [&](std::string_view name) { return childNamed(node, name).attribute("val"); };
  font.name = value("name").value();
  font.size = value("sz").as_double(11);
  font.bold = toggle(node, "b");
  font.italic = toggle(node, "i");
  font.strike = toggle(node, "strike");
  font.outline = toggle(node, "outline");
  font.shadow = toggle(node, "shadow");
  font.condense = toggle(node, "condense");
  font.extend = toggle(node, "extend");
  if (const pugi::xml_node underline = childNamed(node, "u"))
    font.underline = enumOf<CellFont::Underline>(kUnderlines, underline.attribute("val").as_string("single"));
  font.script = enumOf<CellFont::Script>(kScripts, value("vertAlign").value());
  font.color = colorOf(childNamed(node, "color"));
  font.family = value("family").as_int(-1);
  font.charset = value("charset").as_int(-1);
  font.scheme = value("scheme").value();
  return font;
}

CellFill fillOf(const pugi::xml_node& node) {
  CellFill fill;
  if (const pugi::xml_node gradient = childNamed(node, "gradientFill")) {
    std::string text;
    struct Writer : pugi::xml_writer {
      std::string& out;
      explicit Writer(std::string& target) : out(target) {}
      void write(const void* data, std::size_t size) override { out.append(static_cast<const char*>(data), size); }
    } writer(text);
    gradient.print(writer, "", pugi::format_raw);
    fill.gradient = text;
    return fill;
  }
  const pugi::xml_node pattern = childNamed(node, "patternFill");
  fill.pattern = enumOf<FillPattern>(kPatterns, pattern.attribute("patternType").value());
  fill.foreground = colorOf(childNamed(pattern, "fgColor"));
  fill.background = colorOf(childNamed(pattern, "bgColor"));
  return fill;
}

CellBorder borderOf(const pugi::xml_node& node) {
  CellBorder border;
  border.left = lineOf(node, "left", "start");
  border.right = lineOf(node, "right", "end");
  border.top = lineOf(node, "top", "top");
  border.bottom = lineOf(node, "bottom", "bottom");
  border.diagonal = lineOf(node, "diagonal", "diagonal");
  border.diagonalUp = flag(node, "diagonalUp");
  border.diagonalDown = flag(node, "diagonalDown");
  return border;
}

StoredFormat formatOf(const pugi::xml_node& node) {
  StoredFormat format;
  format.numberFormat = node.attribute("numFmtId").as_int();
  format.font = node.attribute("fontId").as_int();
  format.fill = node.attribute("fillId").as_int();
  format.border = node.attribute("borderId").as_int();
  format.base = node.attribute("xfId").as_int();
  format.quotePrefix = flag(node, "quotePrefix");
  format.pivotButton = flag(node, "pivotButton");
  if (const pugi::xml_node alignment = childNamed(node, "alignment")) {
    format.alignment.horizontal = enumOf<HorizontalAlign>(kHorizontal, alignment.attribute("horizontal").value());
    format.alignment.vertical = enumOf<VerticalAlign>(kVertical, alignment.attribute("vertical").value());
    format.alignment.wrap = flag(alignment, "wrapText");
    format.alignment.shrink = flag(alignment, "shrinkToFit");
    format.alignment.justifyLastLine = flag(alignment, "justifyLastLine");
    format.alignment.rotation = alignment.attribute("textRotation").as_int();
    format.alignment.indent = alignment.attribute("indent").as_int();
    format.alignment.relativeIndent = alignment.attribute("relativeIndent").as_int();
    format.alignment.readingOrder = alignment.attribute("readingOrder").as_int();
  }
  if (const pugi::xml_node protection = childNamed(node, "protection")) {
    format.locked = flag(protection, "locked", true);
    format.hidden = flag(protection, "hidden");
  }
  return format;
}

std::string fontXml(const CellFont& font, std::string_view prefix) {
  ElementWriter out(prefix);
  out.toggle("b", font.bold);
  out.toggle("i", font.italic);
  out.toggle("strike", font.strike);
  out.toggle("condense", font.condense);
  out.toggle("extend", font.extend);
  out.toggle("outline", font.outline);
  out.toggle("shadow", font.shadow);
  if (font.underline != CellFont::Underline::None) out.value("u", wordOf(kUnderlines, font.underline));
  if (font.script != CellFont::Script::Baseline) out.value("vertAlign", wordOf(kScripts, font.script));
  out.value("sz", numberText(font.size));
  out.color("color", font.color);
  if (!font.name.empty()) out.value("name", font.name);
  if (font.family >= 0) out.value("family", std::to_string(font.family));
  if (font.charset >= 0) out.value("charset", std::to_string(font.charset));
  if (!font.scheme.empty()) out.value("scheme", font.scheme);
  return out.within("font");
}

std::string fillXml(const CellFill& fill, std::string_view prefix) {
  const std::string element = std::string(prefix) + "fill>";
  if (!fill.gradient.empty()) return "<" + element + fill.gradient + "</" + element;
  ElementWriter out(prefix);
  out.color("fgColor", fill.foreground);
  out.color("bgColor", fill.background);
  return "<" + element + out.within("patternFill", attribute("patternType", wordOf(kPatterns, fill.pattern))) + "</" +
         element;
}

std::string borderXml(const CellBorder& border, std::string_view prefix) {
  ElementWriter out(prefix);
  out.line("left", border.left);
  out.line("right", border.right);
  out.line("top", border.top);
  out.line("bottom", border.bottom);
  out.line("diagonal", border.diagonal);
  std::string attributes;
  if (border.diagonalUp) attributes += attribute("diagonalUp", "1");
  if (border.diagonalDown) attributes += attribute("diagonalDown", "1");
  return out.within("border", attributes);
}

std::string formatXml(const StoredFormat& format, const StoredFormat& base, int baseNumber, std::string_view prefix) {
  const std::string element = std::string(prefix) + "xf";
  std::string out = "<" + element;
  const auto reference = [&](std::string_view name, int number) { out += attribute(name, std::to_string(number)); };
  const auto yes = [&](std::string_view name, bool on) {
    if (on) out += attribute(name, "1");
  };
  reference("numFmtId", format.numberFormat);
  reference("fontId", format.font);
  reference("fillId", format.fill);
  reference("borderId", format.border);
  if (baseNumber >= 0) reference("xfId", baseNumber);
  yes("quotePrefix", format.quotePrefix);
  yes("pivotButton", format.pivotButton);
  if (baseNumber >= 0) {
    yes("applyNumberFormat", format.numberFormat != base.numberFormat);
    yes("applyFont", format.font != base.font);
    yes("applyFill", format.fill != base.fill);
    yes("applyBorder", format.border != base.border);
    yes("applyAlignment", format.alignment != base.alignment);
    yes("applyProtection", format.locked != base.locked || format.hidden != base.hidden);
  }
  std::string children = alignmentXml(format.alignment, prefix);
  if (!format.locked || format.hidden) {
    children += "<" + std::string(prefix) + "protection";
    if (!format.locked) children += attribute("locked", "0");
    if (format.hidden) children += attribute("hidden", "1");
    children += "/>";
  }
  return children.empty() ? out + "/>" : out + ">" + children + "</" + element + ">";
}

}  // namespace quillmarden
