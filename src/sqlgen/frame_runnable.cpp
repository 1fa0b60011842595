#include <algorithm>

#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/frame_run.h"
#include "sqlgen/runnable/tool_text.h"

namespace quillmarden {

namespace {

constexpr long kManyTables = 20;  ///< from here on one look-up for the whole System is cheaper than one a table

/// MySQL takes two hyphens for a comment only where a blank follows, so its ruler is of the other form.
HeadStyle headStyleOf(const ScriptRun& run, ScriptKind kind) {
  HeadStyle style = kind == ScriptKind::MySql ? blockHeadStyle() : HeadStyle();
  if (kind == ScriptKind::PostgreSql) style.schema = run.system.odbcSource;
  return style;
}

/// Parts of a script with the names of their tables.
using Pieces = std::vector<std::pair<std::string, std::string>>;
constexpr std::size_t kPiecesAtOnce = 100;
constexpr std::size_t kWrittenAtOnce = 100000;

/// Writes the pieces in one go. Only where something was lost are they looked at one by one.
void writePieces(ScriptRun& run, ScriptFile& file, Pieces& pieces) {
  std::string all;
  for (const auto& [table, text] : pieces) all += text;
  if (!file.write(all).empty()) {
    for (const auto& [table, text] : pieces) {
      std::u32string lost;
      toCp932(text, &lost);
      if (!lost.empty()) run.result.lost.emplace_back(table, std::move(lost));
    }
  }
  pieces.clear();
}

}  // namespace

bool isRunnable(const ScriptRun& run) { return !run.menu.views && run.list.mnuCreateSQLRunnable.checked; }

TextEncoding encodingOf(const ScriptRun& run) {
  if (run.target.encoding) return *run.target.encoding;
  return isRunnable(run) && run.session.settings.createSql2RunnableUtf8 ? TextEncoding::Utf8 : TextEncoding::Cp932;
}

void putWaitingHead(ScriptRun& run, std::optional<ScriptKind> kind, ScriptFile& file) {
  if (kind) run.waitingHead.text = toolFileHead(*kind, run.encoding, run.waitingHead.text);
  if (!run.waitingHead.text.empty()) writeScript(run, file, "", run.waitingHead);
  run.waitingHead.text.clear();
}

void collectTable(ScriptRun& run, ScriptKind kind, const std::string& fileHead) {
  auto script = std::find_if(run.runnable.begin(), run.runnable.end(),
                             [&](const RunnableScript& known) { return known.kind == kind; });
  if (script == run.runnable.end()) {
    script = run.runnable.insert(run.runnable.end(), RunnableScript{});
    script->kind = kind;
    script->lookUps.manyTables = run.total > kManyTables;
  }
  const Generation generation = generationOf(run);
  ScriptText text;
  text.text = fileHead;
  putHead(generation, headStyleOf(run, kind), text);
  if (run.detail.lblBunrui.caption == "VIEW") {
    script->views.push_back(readScriptView(generation));
    script->views.back().head = std::move(text.text);
    return;
  }
  if (run.detail.readOnly) run.history.barred.insert(run.detail.lblID.caption);
  script->tables.push_back(readScriptTable(generation, kind, script->lookUps));
  script->tables.back().head = std::move(text.text);
}

void putRunnable(ScriptRun& run, ScriptFile& file) {
  const AppSettings& settings = run.session.settings;
  const Generation generation = generationOf(run);
  const RunnableOptions options{.drops = generation.dropDue(),
                                .foreignKeys = generation.due(settings.createSql2FkIsPut),
                                .comments = generation.due(settings.createSql2CommentIsPut),
                                .checks = generation.due(settings.createSql2CheckIsPut),
                                .defaults = generation.due(settings.createSql2DefaultIsPut),
                                .storage = generation.due(settings.createSql2StrageIsPut),
                                .backup = generation.backup ? formatDateTime(run.host.clock.now(), "mmddhhnnss") : ""};
  Pieces pieces;
  for (const RunnableScript& script : run.runnable) {
    putRunnableScript(script, run.system, *run.session.gDB, options, [&](const std::string& table, ScriptText text) {
      pieces.emplace_back(table, std::move(text.text));
      if (pieces.back().second.size() > kWrittenAtOnce || pieces.size() > kPiecesAtOnce) writePieces(run, file, pieces);
    });
    writePieces(run, file, pieces);
    run.result.tables += static_cast<int>(script.tables.size() + script.views.size());
    for (const ScriptTable& table : script.tables) stampTable(run.session, run.history, table.id, run.host.clock.now());
  }
}

}  // namespace quillmarden
