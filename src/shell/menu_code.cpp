#include "shell/menu_build.h"
#include "sqlgen/alter.h"
#include "sqlgen/snippet.h"

namespace quillmarden {

namespace {

MenuPress alterTable(AlterMode mode) {
  return [mode](Application& app, std::string_view screen) {
    const frmTBDetail& detail = app.detail(screen);
    mnuAlterTable_Click(app.session, app.host, detail, detail.selection, mode);
  };
}

MenuPress copyCode(int index) {
  return [index](Application& app, std::string_view screen) {
    const frmTBDetail& detail = app.detail(screen);
    mnuCopyCode_Click(app.session, app.host, detail, detail.selection, index);
  };
}

/// Captions begin with blanks where they belong to a language that an entry above names.
bool beginsLanguage(const SnippetEntry& snippet) { return snippet.index > 1 && !snippet.caption.starts_with(' '); }

}  // namespace

std::vector<MenuEntry> codeMenus() {
  std::vector<MenuEntry> code;
  for (const SnippetEntry& snippet : snippetEntries()) {
    if (beginsLanguage(snippet)) code.push_back(separator());
    code.push_back(entryAt("mnuCopyCode", snippet.index, std::string(snippet.caption), copyCode(snippet.index)));
  }
  return {enabledWhen(submenu("mnutAlterTable", "ALTER文の作成",
                              {entryAt("mnuAlterTable", 0, "項目の追加", alterTable(AlterMode::Add)),
                               entryAt("mnuAlterTable", 1, "項目の変更", alterTable(AlterMode::Change))}),
                      hasTable),
          enabledWhen(submenu("mnutCopyCode", "コードの作成", std::move(code)), hasTable)};
}

}  // namespace quillmarden
