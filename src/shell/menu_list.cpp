#include "common/settings.h"
#include "shell/list_commands.h"
#include "shell/menu_build.h"
#include "shell/screens.h"
#include "shell/tell.h"
#include "sqlgen/frame.h"

namespace quillmarden {

namespace {

/// A handler of the list that works on its record alone.
MenuPress onList(void (*handler)(Host&, const frmTBList&)) {
  return [handler](Application& app, std::string_view) { handler(app.host, app.list); };
}

MenuPress onList(void (*handler)(Session&, Host&, frmTBList&)) {
  return [handler](Application& app, std::string_view) { handler(app.session, app.host, app.list); };
}

/// One after which tables may no longer be changed, or may be again.
MenuPress onRights(void (*handler)(Session&, Host&, frmTBList&)) {
  return [handler](Application& app, std::string_view) {
    handler(app.session, app.host, app.list);
    tellRights(app);
  };
}

MenuPress onSelection(void (*handler)(frmTBList&)) {
  return [handler](Application& app, std::string_view) { handler(app.list); };
}

/// A script, `choice` being what its routine asks beside the screens.
template <typename Routine, typename... Choice>
MenuPress sqlRun(Routine* run, Choice... choice) {
  return [run, choice...](Application& app, std::string_view) {
    run(app.session, app.host, app.list, app.detail(), choice..., RunTarget{});
  };
}

/// A System is chosen, so that there is one to work on.
bool hasSystem(const Application& app, std::string_view) {
  const std::string& system = app.list.CmbSystem.text;
  return !system.empty() && system != kAllSystems && system != kNewSystem;
}

bool hasListedScreen(const Application& app, std::string_view) { return !app.list.lstForm.text().empty(); }

bool hasChosenRows(const Application& app, std::string_view) { return app.list.LstTableSel.count() > 0; }

MenuEntry ofSystem(MenuEntry made) { return enabledWhen(std::move(made), hasSystem); }

MenuEntry ofRights(MenuEntry made, MenuItem frmTBList::*item) {
  return enabledWhen(std::move(made),
                     [item](const Application& app, std::string_view) { return (app.list.*item).enabled; });
}

MenuEntry excel(std::string name, int index, std::string caption) {
  MenuPress press = excelHandler(name, index);
  return entryAt(std::move(name), index, std::move(caption), std::move(press));
}

/// Entries and submenus show for the kinds of row that they mean something for.
void followKind(std::vector<MenuEntry>& entries) {
  for (MenuEntry& made : entries) {
    followKind(made.entries);
    if (made.separator || made.visible) continue;
    made.visible = [name = made.name](const Application& app, std::string_view) {
      return appliesToKind(name, app.list.popupKind);
    };
  }
}

Menu reference() {
  return {"frmTBList",
          "mnutRef",
          "編集",
          true,
          "",
          {ofSystem(entry("mnuForeign", "参照整合性制約(FK)")),
           ofSystem(entry("mnuClass", "値リスト", opens("frmDivision"))),
           ofSystem(entry("mnuDomain", "ドメイン(単語)管理")), ofSystem(entry("mnuCommTb", "共通テーブルの表示追加")),
           entry("mnuCreateIndex", "インデックスの管理"), ofSystem(entry("mnuKenSu", "件数定義", opens("frmKENSU"))),
           ofSystem(entry("mnuReference", "リファレンス")), separator(),
           ofSystem(entry("mnuOpenDBConnect", "MDBを開く(接続先)",
                          [](Application& app, std::string_view) { mnuOpenDBConnect_Click(app.session, app.host); })),
           entry("mnuOpenDB", "MDBを開く(定義保存先)",
                 [](Application& app, std::string_view) { mnuOpenDB_Click(app.session, app.host); }),
           separator(), entry("mnuRev", "リバースエンジニアリング", on(mnuRev_Click))}};
}

Menu reports() {
  return {
      "frmTBList",
      "mnutRep",
      "レポート",
      true,
      "",
      {ofSystem(entry("mnuFind", "項目検索")), entry("mnuTableList", "Queryレポート", excelHandler("mnuTableList", -1)),
       entry("mnuReverseRep", "リバースリポート")}};
}

Menu help() {
  return {"frmTBList",
          "mnutHelp",
          "ヘルプ",
          true,
          "",
          {entry(
               "mnuOpenHelp", "ヘルプ", [](Application& app, std::string_view) { tell(app.display.help); }, "F1"),
           entry("mnuVersion", "バージョン情報", opens("frmAbout"))}};
}

Menu forms() {
  return {"frmTBList",
          "mnutFormList",
          "画面一覧",
          true,
          "lstForm",
          {enabledWhen(entry("mnuFormMin", "最小化", on(mnuFormMin_Click)), hasListedScreen),
           enabledWhen(entry("mnuFormClose", "閉じる", on(mnuFormClose_Click)), hasListedScreen)}};
}

MenuEntry excelOutputs() {
  return submenu(
      "mnutsExcel", "Excel出力",
      {excel("mnuExcelER2Book", 0, "ExcelObject表の作成"), excel("mnuExcelER2Book", 1, "ExcelObject表(備考)"),
       excel("mnuExcelDisk", -1, "Excel出力(磁気ディスク)"), separator(),
       excel("mnuExcel", 0, "ひとつのブックで全て出力"), excel("mnuExcel", 1, "ひとつのブックで選択出力"),
       excel("mnuExcel", 2, "別々のブックで全て出力"), separator(), excel("mnuSosiki", -1, "[メンバー]一覧"),
       excel("mnuSosikiKo", -1, "[メンバー]参加システム一覧"), separator(),
       excel("mnuExcelPath", -1, "保存先フォルダを開く")});
}

MenuEntry flags() {
  const auto editable = [](bool value) {
    return [value](Application& app, std::string_view) {
      mnutbEdit_Click(app.session, app.host, app.list, value);
      tellRights(app);
    };
  };
  return ofRights(
      submenu("mnutsSetting", "編集可・不可/その他",
              {entryAt("mnutbEdit", 0, "編集不可", editable(false)), entryAt("mnutbEdit", 1, "編集可", editable(true)),
               separator(), entry("mnuUpDateAllSystem", "全システム共通", onList(mnuUpDateAllSystem_Click)),
               entry("mnuCheckPoint", "チェックポイントの設定", onList(mnuCheckPoint_Click))}),
      &frmTBList::mnutsSetting);
}

MenuEntry statements() {
  return submenu(
      "mnutsCreateSQL", "Create SQL文の作成",
      {entryAt("mnuCreateSql", 0, "選択行のSQL文", sqlRun(mnuCreateSql_Click, SqlRows::Current, SqlClauses::AsOptions)),
       entryAt("mnuCreateSql", 1, "全てのSQL文作成", sqlRun(mnuCreateSql_Click, SqlRows::All, SqlClauses::AsOptions)),
       entryAt("mnuCreateSql", 2, "選択行のSQL文作成-", sqlRun(mnuCreateSql_Click, SqlRows::Current, SqlClauses::All)),
       entryAt("mnuCreateSql", 3, "全てのSQL文作成-", sqlRun(mnuCreateSql_Click, SqlRows::All, SqlClauses::All)),
       separator(), entryAt("mnuCreateView", 0, "選択行のSQL.View", sqlRun(mnuCreateView_Click)), separator(),
       entryAt("mnuCreateAccess", 0, "選択行のAccessテーブル作成"),
       entryAt("mnuCreateAccess", 1, "全てのAccessテーブル作成"),
       entry("mnuOpenAccess", "Accessファイルを開く",
             [](Application& app, std::string_view) { mnuOpenDBConnect_Click(app.session, app.host); }),
       separator(),
       checkedWhen(entry("mnuCreateSQLBack", "バックアップ作成",
                         [](Application& app, std::string_view) { mnuCreateSQLBack_Click(app.session, app.list); }),
                   [](const Application& app, std::string_view) { return app.list.mnuCreateSQLBack.checked; }),
       checkedWhen(entry("mnuCreateSQLRunnable", "実行可能形式で出力",
                         [](Application& app, std::string_view) { mnuCreateSQLRunnable_Click(app.session, app.list); }),
                   [](const Application& app, std::string_view) { return app.list.mnuCreateSQLRunnable.checked; })});
}

std::vector<MenuEntry> clipboard() {
  const auto names = [](int index) {
    return [index](Application& app, std::string_view) { mnuClipBord_Click(app.host, app.list, index); };
  };
  return {entry("mnuCopyClipBord", "選択行のコピー", onList(mnuCopyClipBord_Click), "Ctrl+S"),
          entry("mnuCopyAllClipBord", "全ての行のコピー", onList(mnuCopyAllClipBord_Click)),
          entry("mnuClipBordJPN", "選択行の日本語名のコピー", onList(mnuClipBordJPN_Click), "Ctrl+D"),
          entry("mnuClipBordUS", "選択行のテーブル名のコピー", onList(mnuClipBordUS_Click)),
          entryAt("mnuClipBord", 0, "選択行の日本語名/テーブル名のコピー", names(0), "Ctrl+C"),
          entryAt("mnuClipBord", 1, "全ての行の日本語名/テーブル名のコピー", names(1), "Ctrl+A"),
          entryAt("mnuClipBord", 2, "選択行の■日本語名/テーブル名のコピー", names(2))};
}

Menu rows() {
  std::vector<MenuEntry> entries = clipboard();
  const auto add = [&](MenuEntry made) { entries.push_back(std::move(made)); };
  add(separator());
  add(excelOutputs());
  add(statements());
  add(separator());
  add(entry("mnuOpenDetails", "別の画面で詳細を開く", on(mnuOpenDetails_Click)));
  add(entry("mnuDetailsArrange", "詳細画面の整列", on(mnuDetailsArrange_Click)));
  add(separator());
  add(ofRights(entry("mnuAdd", "テーブル情報の作成", on(mnuAdd_Click)), &frmTBList::mnuAdd));
  add(ofRights(entry("mnuUpDate", "テーブル情報の変更", on(mnuUpDate_Click)), &frmTBList::mnuUpDate));
  add(ofRights(entry("mnuDelete", "テーブル情報の削除", onRights(mnuDelete_Click)), &frmTBList::mnuDelete));
  add(flags());
  add(separator());
  add(ofSystem(entry("mnuConvAccess2SQLServer", "Access⇒SQLServer変換")));
  add(ofSystem(entry("mnuConvPostgreSQL2Oracle", "PostgreSQL⇒Oracle変換")));
  add(separator());
  add(entry("mnuSelectPut", "選択出力", on(mnuSelectPut_Click)));
  add(excel("mnuMember", -1, "メンバーリスト"));
  add(excel("mnuMail", -1, "メールアドレス一覧"));
  followKind(entries);
  return {"frmTBList", "mnutEdit", "編集", false, "LstTable", std::move(entries)};
}

/// ER forms for the chosen rows: all fields, only keys, titles, fields with their remarks, only fields with a foreign
/// key, and plain text boxes.
std::vector<MenuEntry> drawings() {
  return {excel("mnuExcelER", 0, "ExcelObject表の作成"),           excel("mnuExcelER", 1, "ExcelObject表(キーのみ)"),
          excel("mnuExcelER", 2, "ExcelObject表(テーブル名のみ)"), excel("mnuExcelER", 3, "ExcelObject表(備考)"),
          excel("mnuExcelER", 4, "ExcelObject表(外部参照のみ)"),   excel("mnuExcelER", 5, "ER図(テキストボックス)")};
}

Menu chosenRows() {
  const auto all = [](int index) {
    return [index](Application& app, std::string_view) { mnuSelAll_Click(app.list, index); };
  };
  std::vector<MenuEntry> entries = {
      entry("mnuExcelSel", "選択行を出力対象へ追加", onSelection(mnuExcelSel_Click)),
      enabledWhen(entry("mnuExcelSelRemove", "選択行を出力対象から除く", onSelection(removeFromSelection), "Delete"),
                  hasChosenRows),
      enabledWhen(entry("mnuExcelSelCancel", "出力対象のクリア", onSelection(mnuExcelSelCancel_Click)), hasChosenRows),
      separator(),
      enabledWhen(entryAt("mnuSelAll", 0, "全選択", all(0)), hasChosenRows),
      enabledWhen(entryAt("mnuSelAll", 1, "全選択解除", all(1)), hasChosenRows),
      separator()};
  for (MenuEntry& made : drawings()) entries.push_back(std::move(made));
  for (MenuEntry& made : std::vector<MenuEntry>{
           separator(), excel("mnuExcelSelList", -1, "テーブル一覧"),
           excel("mnuExcelSelListLayout", -1, "テーブルレイアウト一覧"),
           excel("mnuExcelDiskSel", -1, "Excel出力(磁気ディスク)"), separator(),
           entryAt("mnuCreateSQLSel", 0, "SQL文の作成", sqlRun(mnuCreateSQLSel_Click, SqlClauses::AsOptions)),
           entryAt("mnuCreateSQLSel", 1, "SQL文の作成-", sqlRun(mnuCreateSQLSel_Click, SqlClauses::All)),
           entryAt("mnuCreateViewSel", 0, "SQL.Viewの作成", sqlRun(mnuCreateViewSel_Click))})
    entries.push_back(std::move(made));
  return {"frmTBList", "mnutExcel", "出力", true, "LstTableSel", std::move(entries)};
}

}  // namespace

std::vector<Menu> listMenus() { return {reference(), reports(), rows(), chosenRows(), forms(), help()}; }

}  // namespace quillmarden
