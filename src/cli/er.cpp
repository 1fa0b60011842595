#include "cli/er.h"

#include <array>

#include "cli/generate.h"
#include "excel/er_book.h"

namespace quillmarden {

namespace {

/// What a table is drawn as: a small workbook in the sheet, a text box, a disk.
enum class ErForm { Books, TextBoxes, Disks };

struct ErOptions {
  std::string system;
  std::vector<std::string> tables;
  std::string output;
  ErForm form = ErForm::Books;
  int mode = 0;
  bool foreignOnly = false;
};

void addErOptions(OptionSet& set, ErOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
  addOutput(set, options.output);
  set.choice("--shape", options.form, "text|disk",
             "text: テキストボックス、disk: 磁気ディスクの図形で描く。省略時は、テーブルごとの小さな表",
             {{"text", ErForm::TextBoxes}, {"disk", ErForm::Disks}});
  set.number("--mode", options.mode, "N", "1: キー項目のみ、2: 名称のみ、3: 備考も表示、その他: 全項目")
      .excludes("--shape");
  set.flag("--fk-only", options.foreignOnly, "外部参照のある項目のみ").excludes("--shape");
}

/// What a number means; any that has no meaning of its own shows all fields.
ErFields fieldsOf(int mode) {
  constexpr std::array kFields = {ErFields::All, ErFields::KeysOnly, ErFields::TitleOnly, ErFields::TwoColumns};
  return mode > 0 && mode < static_cast<int>(kFields.size()) ? kFields[static_cast<std::size_t>(mode)] : ErFields::All;
}

ExitStatus runEr(Run& run, const ErOptions& options) {
  frmTBList list;
  if (!chooseTables(run, options.system, options.tables, list)) return kFailed;
  BookRun books;
  books.outputFile = options.output;
  ErChoice choice;
  choice.fields = fieldsOf(options.mode);
  choice.foreignOnly = options.foreignOnly;
  frmTBDetail detail;
  std::string path;
  switch (options.form) {
    case ErForm::Books:
      path = pPutExcel2ER(run.session, run.host, books, list, detail, choice);
      break;
    case ErForm::TextBoxes:
      path = pPutExcel2ERTextBox(run.session, run.host, books, list, detail, choice);
      break;
    case ErForm::Disks:
      path = pPutCurrentTable2ExcelDisk(run.session, run.host, books, list, detail, false);
      break;
  }
  return printFile(run, books, path);
}

}  // namespace

constinit const Command kErCommand{.name = "er",
                                   .group = CommandGroup::Workbooks,
                                   .help = "ERのブックを作成し、ファイル名を表示する",
                                   .prepare = prepareCommand<ErOptions, addErOptions, runEr>};

}  // namespace quillmarden
