#include <array>

#include "common/message.h"
#include "excel/er_book.h"
#include "excel/list_book.h"
#include "excel/member_book.h"
#include "shell/menu_build.h"

namespace quillmarden {

// The one place where the outputs to a spreadsheet are tied to their menus.

namespace {

/// What an output works on. The fields of its tables are read into a screen of their own: one that is being edited
/// stays as it is, and the person's choice of rows does, too.
struct OutputRun {
  Session& session;
  Host& host;
  BookRun book = {};
  frmTBList list;
  frmTBDetail detail = {};
};

/// No menu works while the output goes through the tables.
class Running {
 public:
  explicit Running(frmTBList& list) : list_(list) { list_.running = true; }
  ~Running() { list_.running = false; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  frmTBList& list_;
};

void all(frmTBList& list) { list.LstTableSel = list.LstTable; }

/// The rows taken over for output or, without any, the selected ones.
void chosen(frmTBList& list) {
  if (list.LstTableSel.count() == 0) mnuExcelSel_Click(list);
}

void asItIs(frmTBList&) {}

MenuPress output(void (*rows)(frmTBList& list), std::function<void(OutputRun& run)> put) {
  return [rows, put = std::move(put)](Application& app, std::string_view) {
    const Running running(app.list);
    OutputRun run{app.session, app.host, {}, app.list};
    rows(run.list);
    put(run);
  };
}

/// A long output that asks nothing before it starts offers its stop button at once.
MenuPress stoppable(MenuPress press) {
  return [press = std::move(press)](Application& app, std::string_view screen) {
    const StopScreen stop(app);
    press(app, screen);
  };
}

MenuPress drawing(void (*rows)(frmTBList& list), ErChoice choice) {
  choice.openAfter = true;
  return output(
      rows, [choice](OutputRun& run) { pPutExcel2ER(run.session, run.host, run.book, run.list, run.detail, choice); });
}

/// Drawings of the chosen rows, in the order of their menu; the last entry of it draws text boxes.
MenuPress chosenDrawing(int index) {
  static const std::array<ErChoice, 5> kChoices = {{{.fields = ErFields::All},
                                                    {.fields = ErFields::KeysOnly},
                                                    {.fields = ErFields::TitleOnly},
                                                    {.fields = ErFields::TwoColumns},
                                                    {.foreignOnly = true}}};
  const auto place = static_cast<std::size_t>(index);
  if (place < kChoices.size()) return drawing(chosen, kChoices[place]);
  return output(chosen, [](OutputRun& run) {
    pPutExcel2ERTextBox(run.session, run.host, run.book, run.list, run.detail, {.openAfter = true});
  });
}

MenuPress disks(void (*rows)(frmTBList& list)) {
  return output(rows, [](OutputRun& run) {
    pPutCurrentTable2ExcelDisk(run.session, run.host, run.book, run.list, run.detail, true);
  });
}

MenuPress layouts(int index) {
  if (index == 2) {
    return output(
        all, [](OutputRun& run) { putSeparateLayouts(run.session, run.host, run.book, run.list, run.detail, true); });
  }
  return output(index == 0 ? all : chosen, [index](OutputRun& run) {
    // Without any row the routine would take all.
    if (index == 1 && run.list.LstTableSel.count() == 0)
      gMsgBox(run.host, "選択されていません.");
    else
      mnuExcel_Click(run.session, run.host, run.book, run.list, run.detail, true);
  });
}

MenuPress tableList(bool withFields) {
  return output(asItIs, [withFields](OutputRun& run) {
    mnuExcelSelList_Click(run.session, run.host, run.book, run.list, withFields, true);
  });
}

MenuPress members(void (*rows)(frmTBList& list)) {
  return output(rows, [](OutputRun& run) { pPutMemberExcel(run.session, run.host, run.book, run.list, true); });
}

MenuPress memberSystems(void (*rows)(frmTBList& list)) {
  return output(rows, [](OutputRun& run) { pPutMemberSystemExcel(run.session, run.host, run.book, run.list, true); });
}

}  // namespace

MenuPress excelHandler(std::string_view name, int index) {
  if (name == "mnuExcelER2Book")
    return stoppable(drawing(all, {.fields = index == 0 ? ErFields::All : ErFields::TwoColumns}));
  if (name == "mnuExcelER") return stoppable(chosenDrawing(index));
  if (name == "mnuExcelDisk") return stoppable(disks(all));
  if (name == "mnuExcelDiskSel") return stoppable(disks(asItIs));
  if (name == "mnuExcel") return layouts(index);
  if (name == "mnuExcelSelList") return tableList(false);
  if (name == "mnuExcelSelListLayout") return tableList(true);
  if (name == "mnuExcelPath")
    return [](Application& app, std::string_view) { mnuExcelPath_Click(app.session, app.host); };
  if (name == "mnuSosiki") return members(all);
  if (name == "mnuSosikiKo") return memberSystems(all);
  if (name == "mnuMember") return members(asItIs);
  if (name == "mnuMail") return output(asItIs, [](OutputRun& run) { mnuMail_Click(run.session, run.host, run.list); });
  if (name == "mnuTableList") return opens("frmReport");
  return {};
}

}  // namespace quillmarden
