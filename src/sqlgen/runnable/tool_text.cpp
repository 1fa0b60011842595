#include "sqlgen/runnable/tool_text.h"

#include <algorithm>
#include <string_view>

#include "common/text.h"
#include "common/utf8.h"

namespace quillmarden {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kGoesOn = "' ||\r\n'";
constexpr std::string_view kComment = "-- ";

bool beginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

/// Where a line can end: bytes up to there.
struct Places {
  std::size_t between = 0;  ///< outside literals and names
  std::size_t inside = 0;   ///< in a literal
};

/// Looks at the sign at `at` in a literal whose text begins at `begin`. Gives how many signs belong together: a doubled
/// quote stays in one piece.
std::size_t passInside(std::string_view line, std::size_t begin, std::size_t at, Places& places) {
  const bool doubled = line[at] == '\'' && line.substr(at + 1).starts_with('\'');
  if (at > begin && (doubled || (line[at] != '\'' && beginsCharacter(line[at])))) places.inside = at;
  return doubled ? 2 : 1;
}

/// The last places of a line within the length.
Places lastPlaces(std::string_view line, std::size_t most) {
  Places places;
  char quote = '\0';
  std::size_t begin = 0;
  for (std::size_t i = 0, passed = 1; i < std::min(most, line.size()); i += passed) {
    const char c = line[i];
    passed = quote == '\'' ? passInside(line, begin, i, places) : 1;
    if (quote != '\0') {
      if (c == quote && passed == 1) quote = '\0';
      continue;
    }
    if (c == '\'' || c == '"') {
      quote = c;
      begin = i + 1;
    }
    // The tool takes a "-" at the end of a line for its own.
    if (c == ' ' && i > 0 && line[i - 1] != '-') places.between = i;
    if (c == ',' && i + 1 < line.size()) places.between = i + 1;
  }
  return places;
}

/// Breaks a statement's line between words, or a literal in two that are joined.
void putStatementLine(std::string_view line, std::string& text) {
  std::string rest(line);
  while (rest.size() > kLongestOracleLine) {
    const Places places = lastPlaces(rest, kLongestOracleLine - kGoesOn.size());
    if (places.between > 0) {
      text.append(rest, 0, places.between).append(kLineEnd);
      rest.erase(0, places.between);
    } else if (places.inside > 0) {
      text.append(rest, 0, places.inside).append(kGoesOn.substr(0, kGoesOn.size() - 1));
      rest.replace(0, places.inside, "'");
    } else {
      break;
    }
  }
  text += rest;
}

void putCommentLine(std::string_view line, std::string& text) {
  std::size_t most = kLongestOracleLine;
  while (line.size() > most) {
    std::size_t end = most;
    while (!beginsCharacter(line[end])) --end;
    text.append(line.substr(0, end)).append(kLineEnd).append(kComment);
    line.remove_prefix(end);
    most = kLongestOracleLine - kComment.size();
  }
  text += line;
}

std::string inShortLines(const std::string& text) {
  std::string broken;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(kLineEnd, at), text.size());
    const std::string_view line = std::string_view(text).substr(at, end - at);
    if (line.size() <= kLongestOracleLine) {
      broken += line;
    } else {
      (line.starts_with(kComment) ? putCommentLine : putStatementLine)(line, broken);
    }
    if (end < text.size()) broken += kLineEnd;
    at = end + kLineEnd.size();
  }
  return broken;
}

/// What a script begins with. All of it is ASCII where a server reads it, since what is not could only be read behind.
std::string_view firstLines(ScriptKind kind, bool utf8) {
  switch (kind) {
    case ScriptKind::Oracle:
      // Its tool takes the encoding from the environment alone. It asks for a value where it meets "&", in comments and
      // literals too.
      return utf8 ? "SET DEFINE OFF\r\n-- 文字コード : \tUTF-8 (NLS_LANG=.AL32UTF8)\r\n"
                  : "SET DEFINE OFF\r\n-- 文字コード : \tCP932 (NLS_LANG=.JA16SJISTILDE)\r\n";
    case ScriptKind::SqlServer:
      // Its tools know UTF-8 by a byte order mark, and take the machine's code page without one.
      return utf8 ? "\xEF\xBB\xBF-- 文字コード : \tUTF-8 (sqlcmd -f 65001)\r\n"
                  : "-- 文字コード : \tCP932 (sqlcmd -f 932)\r\n";
    case ScriptKind::Teradata:
      return utf8 ? ".SET SESSION CHARSET 'UTF8'\r\n" : ".SET SESSION CHARSET 'KANJISJIS_0S'\r\n";
    case ScriptKind::MySql:
      // In CP932 the second byte of a character can be a backslash or a quote: the client has to know by its own
      // command, since it looks for the ends of statements itself. The mode is one in which a backslash escapes and a
      // date of zeros is one.
      return utf8 ? "SET NAMES utf8mb4\r\n;\r\nSET SESSION sql_mode = 'STRICT_ALL_TABLES'\r\n;\r\n"
                  : "\\C cp932\r\nSET NAMES cp932\r\n;\r\nSET SESSION sql_mode = 'STRICT_ALL_TABLES'\r\n;\r\n";
    case ScriptKind::PostgreSql:
      break;
  }
  return utf8 ? "SET client_encoding = 'UTF8'\r\n;\r\nSET standard_conforming_strings = on\r\n;\r\n"
              : "SET client_encoding = 'SJIS'\r\n;\r\nSET standard_conforming_strings = on\r\n;\r\n";
}

/// Puts a "?" for each byte that no server reads: what is no UTF-8, and the zero that ends a text for a client. Other
/// tools may have stored them.
void putReadable(std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t plain = asciiRun(text, at);
    for (char* c = text.data() + at; c < text.data() + at + plain; ++c)
      if (*c == '\0') *c = '?';
    at += plain;
    if (at == text.size()) break;
    const Utf8Step step = utf8At(text, at);
    if (!step.valid) text[at] = '?';
    at += step.size;
  }
}

/// Whether any line is too long.
bool hasLongLine(std::string_view text) {
  while (text.size() > kLongestOracleLine) {
    const std::size_t end = text.rfind(kLineEnd, kLongestOracleLine);
    if (end == std::string_view::npos) return true;
    text.remove_prefix(end + kLineEnd.size());
  }
  return false;
}

}  // namespace

std::string toolText(ScriptKind kind, std::string text) {
  putReadable(text);
  if (kind == ScriptKind::Oracle && hasLongLine(text)) return inShortLines(text);
  // The tool of SQL Server asks for the value of a name in these brackets. Literals have them apart already.
  if (kind == ScriptKind::SqlServer && text.find("$(") != std::string::npos) return gReplaceAll(text, "$(", "$ (");
  return text;
}

std::string toolFileHead(ScriptKind kind, TextEncoding encoding, const std::string& head) {
  return toolText(kind, std::string(firstLines(kind, encoding == TextEncoding::Utf8)).append(head));
}

}  // namespace quillmarden
