#include "editing/frm_partition.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_operations.h"
#include "shell/detail_commands.h"
#include "shell/menu_build.h"

namespace quillmarden {

namespace {

/// A handler of the grid.
MenuPress onGrid(void (*handler)(Session&, Host&, frmTBDetail&)) {
  return [handler](Application& app, std::string_view screen) { handler(app.session, app.host, app.detail(screen)); };
}

/// One that works on the selected cells.
MenuPress onCells(void (*handler)(Session&, Host&, frmTBDetail&, const GridSelection&)) {
  return [handler](Application& app, std::string_view screen) {
    frmTBDetail& detail = app.detail(screen);
    // A copy, for the handler moves the selection.
    const GridSelection selection = detail.selection;
    handler(app.session, app.host, detail, selection);
  };
}

bool canEditGrid(const Application& app, std::string_view screen) {
  const frmTBDetail& detail = app.detail(screen);
  return !detail.lblID.caption.empty() && !detail.readOnly && detail.mnuEditing.enabled;
}

MenuEntry changing(MenuEntry made) { return enabledWhen(std::move(made), canEditGrid); }

MenuEntry ofTable(MenuEntry made) { return enabledWhen(std::move(made), hasTable); }

void copy(Application& app, std::string_view screen) {
  const frmTBDetail& detail = app.detail(screen);
  mnuCopy_Click(app.session, app.host, detail, detail.selection, app.copies);
}

void paste(Application& app, std::string_view screen) {
  frmTBDetail& detail = app.detail(screen);
  const GridSelection selection = detail.selection;
  mnuPaste_Click(app.session, app.host, detail, selection, app.copies);
}

void partition(Application& app, std::string_view screen) {
  frmTBDetail& detail = app.detail(screen);
  mnuPartition_Click(app.session, app.host, detail, detail.selection);
}

std::vector<MenuEntry> editing() {
  return {changing(entry("mnuUndo", "元に戻す", onGrid(mnuUndo_Click), "Ctrl+Z")),
          changing(entry("mnuRedo", "やり直し", onGrid(mnuRedo_Click), "Ctrl+Y")),
          separator(),
          ofTable(entry("mnuCopy", "コピー", copy, "Ctrl+C")),
          changing(entry("mnuPaste", "貼り付け", paste, "Ctrl+V")),
          changing(entry("mnuClear", "選択範囲の初期化", onCells(mnuClear_Click))),
          separator(),
          changing(entry("mnuInSert", "行挿入", onCells(mnuInSert_Click))),
          changing(entry("mnuAddLine", "行追加", onGrid(mnuAddLine_Click))),
          changing(entry("mnuDuplicate", "行の複製", onCells(mnuDuplicate_Click))),
          changing(entry("mnuDelete", "行削除", onCells(mnuDelete_Click)))};
}

std::vector<MenuEntry> rowHelpers() {
  return {separator(),
          changing(entry("mnuSort", "並び替え設定", openSort)),
          changing(entry("mnuReplace", "置換")),
          changing(entry("mnuDivisionRef", "値リストの参照", openDivisionRef)),
          changing(entry("mnuDomainRef", "ドメインの参照")),
          visibleWhen(
              changing(entry("mnuPartition", "Partitionの設定", partition)),
              [](const Application& app, std::string_view screen) { return app.detail(screen).mnuPartition.visible; }),
          changing(entry("mnuPmark", "個人情報の項目の表示",
                         [](Application& app, std::string_view screen) { mnuPmark_Click(app.detail(screen)); })),
          ofTable(entry("mnuMemo", "付帯メモ", openMemo)),
          separator()};
}

Menu grid() {
  std::vector<MenuEntry> entries = editing();
  for (std::vector<MenuEntry>& part : std::vector<std::vector<MenuEntry>>{rowHelpers(), codeMenus()})
    for (MenuEntry& made : part) entries.push_back(std::move(made));
  return {"frmTBDetail", "mnutPOPUP", "編集", true, "Spread", std::move(entries)};
}

}  // namespace

std::vector<Menu> detailMenus() { return {grid()}; }

}  // namespace quillmarden
