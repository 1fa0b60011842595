#include "workbook/xml_text.h"

#include <array>
#include <charconv>
#include <optional>

#include "common/utf8.h"
#include "workbook/workbook_error.h"

namespace quillmarden {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The length of the UTF-8 character at `at`, 0 when there is none that XML can hold. For bytes from 0x80 on.
std::size_t wideLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned char lead = byte(0);
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < size) return 0;
  for (std::size_t i = 1; i < size; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  if (lead == 0xE0 && byte(1) < 0xA0) return 0;                      // overlong
  if (lead == 0xED && byte(1) > 0x9F) return 0;                      // surrogates
  if (lead == 0xF0 && byte(1) < 0x90) return 0;                      // overlong
  if (lead == 0xF4 && byte(1) > 0x8F) return 0;                      // beyond U+10FFFF
  if (lead == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE) return 0;  // U+FFFE, U+FFFF
  return size;
}

enum class Target { Text, Attribute, Cell };

/// What stands for an ASCII character; nothing when it stands for itself.
std::string_view substitute(char c, Target target) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return target == Target::Attribute ? "&quot;" : std::string_view();
    case '\t':
      return target == Target::Attribute ? "&#9;" : std::string_view();
    case '\n':
      return target == Target::Attribute ? "&#10;" : std::string_view();
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (std::size_t i = 0x20; i < 0x7F; ++i) plain[i] = true;
  for (const char c : {'&', '<', '>', '"', '_'}) plain[static_cast<unsigned char>(c)] = false;
  return plain;
}();

std::optional<unsigned> hexEscape(std::string_view text) {
  if (text.size() < 7 || text[0] != '_' || text[1] != 'x' || text[6] != '_') return std::nullopt;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data() + 2, text.data() + 6, value, 16);
  if (error != std::errc() || end != text.data() + 6) return std::nullopt;
  return value;
}

void appendControl(std::string& out, char c, Target target) {
  if (target != Target::Cell) {
    out += kReplacement;
    return;
  }
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(c);
  out += "_x00";
  out += kDigits[value >> 4];
  out += kDigits[value & 15];
  out += '_';
}

void append(std::string& out, std::string_view text, Target target) {
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && kPlain[static_cast<unsigned char>(text[end])]) ++end;
    out.append(text, at, end - at);
    if (end == text.size()) return;
    at = end;
    const char c = text[at];
    if (static_cast<unsigned char>(c) >= 0x80) {
      const std::size_t size = wideLength(text, at);
      out += size == 0 ? kReplacement : text.substr(at, size);
      at += size == 0 ? 1 : size;
      continue;
    }
    const bool control =
        static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && (c != '\r' || target == Target::Cell);
    if (control) {
      appendControl(out, c, target);
    } else if (const std::string_view instead = substitute(c, target); !instead.empty()) {
      out += instead;
    } else if (c == '_' && target == Target::Cell && hexEscape(text.substr(at))) {
      out += "_x005F_";
    } else {
      out += c;
    }
    ++at;
  }
}

void appendUtf8(std::string& out, unsigned value) {
  const auto put = [&](unsigned byte) { out += static_cast<char>(byte); };
  if (value < 0x80) {
    put(value);
  } else if (value < 0x800) {
    put(0xC0 | (value >> 6));
    put(0x80 | (value & 0x3F));
  } else if (value < 0x10000) {
    put(0xE0 | (value >> 12));
    put(0x80 | ((value >> 6) & 0x3F));
    put(0x80 | (value & 0x3F));
  } else {
    put(0xF0 | (value >> 18));
    put(0x80 | ((value >> 12) & 0x3F));
    put(0x80 | ((value >> 6) & 0x3F));
    put(0x80 | (value & 0x3F));
  }
}

bool isCharacter(unsigned value) {
  return value != 0 && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF) && value != 0xFFFE && value != 0xFFFF;
}

/// Appends what the entity "name" (between "&" and ";") stands for; false when it is unknown.
bool appendEntity(std::string& out, std::string_view name) {
  constexpr std::pair<std::string_view, char> kNamed[] = {
      {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& [known, character] : kNamed) {
    if (name != known) continue;
    out += character;
    return true;
  }
  if (!name.starts_with('#')) return false;
  const bool hex = name.starts_with("#x");
  name.remove_prefix(hex ? 2 : 1);
  unsigned value = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value, hex ? 16 : 10);
  if (error != std::errc() || end != name.data() + name.size() || !isCharacter(value)) return false;
  appendUtf8(out, value);
  return true;
}

/// Appends UTF-16 text as UTF-8; `high` is the place of the high byte in a unit.
std::string fromUtf16(std::string_view bytes, std::size_t high) {
  std::string out;
  out.reserve(bytes.size());
  const auto unit = [&](std::size_t at) {
    return (static_cast<unsigned>(static_cast<unsigned char>(bytes[at + high])) << 8) |
           static_cast<unsigned char>(bytes[at + 1 - high]);
  };
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    unsigned value = unit(at);
    if (value >= 0xD800 && value < 0xDC00 && at + 3 < bytes.size()) {
      const unsigned low = unit(at + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        value = 0x10000 + ((value - 0xD800) << 10) + (low - 0xDC00);
        at += 2;
      }
    }
    if (isCharacter(value)) {
      appendUtf8(out, value);
    } else {
      out += kReplacement;
    }
  }
  return out;
}

/// The encoding that the XML declaration names, in lower case; "" when it names none.
std::string declaredEncoding(std::string_view xml, std::size_t* from, std::size_t* to) {
  if (!xml.starts_with("<?xml")) return "";
  const std::string_view declaration = xml.substr(0, xml.find("?>"));
  const std::size_t at = declaration.find("encoding");
  const std::size_t open = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
  if (open == std::string_view::npos) return "";
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) return "";
  *from = at;
  *to = close + 1;
  std::string name(declaration.substr(open + 1, close - open - 1));
  for (char& c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 0x20);
  return name;
}

}  // namespace

void appendXml(std::string& out, std::string_view text) { append(out, text, Target::Text); }

void appendXmlAttribute(std::string& out, std::string_view text) { append(out, text, Target::Attribute); }

std::string xmlText(std::string_view text) {
  std::string out;
  appendXml(out, text);
  return out;
}

std::string xmlSafe(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const bool ascii = byte < 0x80;
    const bool plain = byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r';
    const std::size_t size = ascii ? (plain ? 1 : 0) : wideLength(text, at);
    out += size == 0 ? kReplacement : text.substr(at, size);
    at += size == 0 ? 1 : size;
  }
  return out;
}

void appendCellText(std::string& out, std::string_view text) { append(out, text, Target::Cell); }

bool hasOuterBlanks(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  return !text.empty() && (blank(text.front()) || blank(text.back()) || text.find('\n') != std::string_view::npos);
}

std::string xmlDecode(std::string_view raw) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t at = 0; at < raw.size();) {
    const std::size_t end = std::min(raw.find_first_of("&\r", at), raw.size());
    out.append(raw, at, end - at);
    at = end;
    if (at == raw.size()) break;
    if (raw[at] == '\r') {
      out += '\n';
      at += raw.substr(at).starts_with("\r\n") ? 2 : 1;
      continue;
    }
    const std::size_t semicolon = raw.substr(at, 12).find(';');
    if (semicolon == std::string_view::npos || !appendEntity(out, raw.substr(at + 1, semicolon - 1))) {
      out += '&';
      ++at;
    } else {
      at += semicolon + 1;
    }
  }
  return out;
}

std::string cellTextDecode(std::string_view text) {
  if (text.find("_x") == std::string_view::npos) return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto value = hexEscape(text.substr(at));
    if (value && isCharacter(*value)) {
      appendUtf8(out, *value);
      at += 7;
    } else {
      out += text[at++];
    }
  }
  return out;
}

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    units += step.character > 0xFFFF ? 2 : 1;
    at += step.size;
  }
  return units;
}

std::string_view utf16Prefix(std::string_view text, std::size_t units) {
  std::size_t at = 0;
  while (at < text.size()) {
    const Utf8Step step = utf8At(text, at);
    const std::size_t more = step.character > 0xFFFF ? 2 : 1;
    if (more > units) break;
    units -= more;
    at += step.size;
  }
  return text.substr(0, at);
}

std::string xmlAsUtf8(std::string bytes, std::string_view part) {
  const std::string_view view(bytes);
  if (view.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  const bool big = view.starts_with("\xFE\xFF");
  const bool little = view.starts_with("\xFF\xFE");
  if (big || little) bytes = fromUtf16(std::string_view(bytes).substr(2), big ? 0 : 1);
  std::size_t from = 0;
  std::size_t to = 0;
  const std::string encoding = declaredEncoding(bytes, &from, &to);
  if (big || little) {
    if (!encoding.empty()) bytes.replace(from, to - from, "encoding=\"UTF-8\"");
  } else if (!encoding.empty() && encoding != "utf-8" && encoding != "us-ascii") {
    throw WorkbookError(WorkbookFault::Damaged, std::string(part),
                        "文字コード「" + encoding + "」には対応していません.");
  }
  return bytes;
}

}  // namespace quillmarden
