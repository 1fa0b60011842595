#include <algorithm>
#include <cctype>
#include <utility>

#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

/// What a view reads: a table of the run, a view that stands in front of it, or something that the server has.
struct ViewSource {
  std::string qualified;
  bool defined = false;
  std::unordered_map<std::string, std::string> columns;  ///< folded name to the quoted one
};

/// By their names, folded.
using ViewSources = std::unordered_map<std::string, ViewSource>;

std::string_view viewWords(ScriptKind kind) {
  if (kind == ScriptKind::SqlServer) return "CREATE OR ALTER VIEW ";
  return kind == ScriptKind::Teradata ? "REPLACE VIEW " : "CREATE OR REPLACE VIEW ";
}

/// Tables and columns find each other without case, as the definitions name them.
ViewSources sourcesOfTables(Writing& writing) {
  ViewSources sources;
  for (const ScriptTable& table : writing.script.tables) {
    if (writing.unmade.contains(&table)) continue;
    ViewSource source{namesOf(writing, table).qualified, true, {}};
    for (const ScriptColumn& column : table.columns)
      if (!writing.leftOut.contains(&column))
        source.columns.emplace(toLower(column.name), quotedColumn(writing, table.id, column.name));
    sources.emplace(toLower(table.name), std::move(source));
  }
  return sources;
}

/// A server of MariaDB has tables of numbers, under names of small letters alone.
bool isSequenceTable(std::string_view lower) {
  constexpr std::string_view kBegin = "seq_", kTo = "_to_";
  const std::size_t to = lower.find(kTo);
  if (!lower.starts_with(kBegin) || to == std::string_view::npos) return false;
  const auto digits = [](std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
  };
  return digits(lower.substr(kBegin.size(), to - kBegin.size())) && digits(lower.substr(to + kTo.size()));
}

/// The statement of a view that may not find what it reads.
void putUnsureView(const Dialect& dialect, const ScriptView& view, const std::string& statement, ScriptText& text) {
  putRemark(text, "参照先がシステムに定義されていません", view.name + " -> " + view.table);
  if (dialect.kind == ScriptKind::PostgreSql) {
    text.print("DO ", textLiteral(dialect, "BEGIN " + statement +
                                               "; EXCEPTION WHEN undefined_table OR undefined_column THEN NULL; END"));
    text.print(dialect.end);
    return;
  }
  // There is no way to have this server try: whoever knows the table takes the marks away.
  text.print("-- ", oneLine(gReplaceAll(statement, "\r\n", " ")), dialect.end);
}

/// The statement, and what the view offers to others. Columns that the source lacks are left out.
std::string viewStatement(Writing& writing, const ScriptView& view, const ViewSource& source, ViewSource& offered,
                          ScriptText& remarks) {
  const Dialect& dialect = writing.dialect;
  offered = {namesOf(writing, "view " + view.name, view.name).qualified, source.defined, {}};
  NameScope names(dialect, NameOf::Column);
  std::string items;
  for (const auto& [from, alias] : view.items) {
    const auto column = source.columns.find(toLower(from));
    if (source.defined && column == source.columns.end()) {
      putRemark(remarks, "VIEWの項目がありません", view.name + "." + from);
      continue;
    }
    const std::string own = source.defined ? column->second : serverName(dialect, from);
    const std::string& wanted = alias.empty() ? from : alias;
    const std::string name = quotedName(dialect, names.useOnce(wanted));
    items.append(items.empty() ? "SELECT\ta." : "\r\n\t,a.").append(own);
    if (!alias.empty() || (source.defined && name != own)) items.append(" AS ").append(name);
    offered.columns.emplace(toLower(wanted), name);
  }
  for (const std::string& change : names.changes()) putRemark(remarks, "名称を変更しました", change);
  if (items.empty()) return {};
  return std::string(viewWords(dialect.kind)) + offered.qualified + " AS\r\n" + items + "\r\nFROM " + source.qualified +
         " a";
}

void putView(Writing& writing, const ScriptView& view, const ViewSource& source, ViewSources& sources,
             const ScriptSink& sink) {
  const Dialect& dialect = writing.dialect;
  ScriptText text;
  text.text = view.head;
  ViewSource offered;
  const std::string statement = viewStatement(writing, view, source, offered, text);
  const bool own = dialect.kind == ScriptKind::MySql && isSequenceTable(source.qualified);
  if (statement.empty()) {
    putRemark(text, "項目がないため作成できません", view.name);
  } else if (!source.defined && dialect.knowsTypes && !own) {
    putUnsureView(dialect, view, statement, text);
  } else {
    text.print(statement);
    text.print(dialect.end);
    sources.emplace(toLower(view.name), std::move(offered));
  }
  sink(view.name, std::move(text));
}

}  // namespace

void putViews(Writing& writing, const ScriptSink& sink) {
  if (writing.script.views.empty()) return;
  ViewSources sources = sourcesOfTables(writing);
  std::vector<const ScriptView*> waiting;
  for (const ScriptView& view : writing.script.views) waiting.push_back(&view);
  // What is read comes first; in the end only those are left that read nothing of this script.
  for (bool found = true; found;) {
    found = false;
    std::vector<const ScriptView*> rest;
    for (const ScriptView* view : waiting) {
      const auto source = sources.find(toLower(view->table));
      if (source == sources.end()) {
        rest.push_back(view);
        continue;
      }
      const ViewSource read = source->second;
      putView(writing, *view, read, sources, sink);
      found = true;
    }
    waiting = std::move(rest);
  }
  for (const ScriptView* view : waiting) {
    const std::string lower = toLower(view->table);
    const bool sequence = writing.dialect.kind == ScriptKind::MySql && isSequenceTable(lower);
    const ViewSource source{sequence ? lower : serverName(writing.dialect, view->table), false, {}};
    putView(writing, *view, source, sources, sink);
  }
}

}  // namespace quillmarden
