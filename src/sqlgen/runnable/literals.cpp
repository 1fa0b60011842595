#include "sqlgen/runnable/literals.h"

#include <algorithm>

#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

/// A line that holds nothing but "go" ends a batch of SQL Server, inside a literal too.
bool endsBatch(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = trim(text.substr(0, end));
    const bool go = line.size() >= 2 && (line[0] == 'g' || line[0] == 'G') && (line[1] == 'o' || line[1] == 'O');
    if (go && (line.size() == 2 || line[2] == ' ')) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

/// Whether line ends in a literal stand as they are.
bool keepsLineEnds(ScriptKind kind, std::string_view text) {
  // The command-line tools of these kinds end a statement inside a literal at a line of their own.
  if (kind == ScriptKind::Oracle || kind == ScriptKind::Teradata) return false;
  return kind != ScriptKind::SqlServer || !endsBatch(text);
}

}  // namespace

void appendTextLiteral(const Dialect& dialect, std::string_view text, std::string& script) {
  const bool mySql = dialect.kind == ScriptKind::MySql;
  const bool sqlServer = dialect.kind == ScriptKind::SqlServer;
  script += sqlServer ? "N'" : "'";
  std::string flat;
  if (text.find_first_of("\r\n") != std::string_view::npos && !keepsLineEnds(dialect.kind, text))
    text = flat = oneLine(gReplaceAll(text, "\r\n", "\n"));
  // A dollar sign before a bracket is a variable of SQL Server's tool.
  const std::string_view special = mySql ? "'\\\r\n" : sqlServer ? "'$" : "'";
  while (true) {
    const std::size_t plain = std::min(text.find_first_of(special), text.size());
    script += text.substr(0, plain);
    if (plain == text.size()) break;
    // The command-line tool of MySQL takes the CR of a line end away; an escape stays.
    const char c = text[plain];
    if (c == '$') {
      script += text.substr(plain).starts_with(kToolVariable) ? "$' + N'" : "$";
    } else if (c == '\r' || c == '\n') {
      script += c == '\r' ? "\\r" : "\\n";
    } else {
      script.append(2, c);
    }
    text.remove_prefix(plain + 1);
  }
  script += '\'';
}

std::string textLiteral(const Dialect& dialect, std::string_view text) {
  std::string literal;
  appendTextLiteral(dialect, text, literal);
  return literal;
}

}  // namespace quillmarden
