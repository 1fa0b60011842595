// Makes a template as programs with libxlsxwriter do: chart, chart sheet, picture, rich text, comment, validation,
// conditional format, and a module of macros when one is given. The cells stand where templates.py says.
//   make_xlsxwriter RESULT PICTURE [MACROS]

#include <xlsxwriter.h>

#include <array>
#include <iostream>
#include <string>

namespace {

constexpr lxw_row_t kFirstRow = 9;  // counted from 0
constexpr lxw_row_t kLastRow = 48;
constexpr std::array kHeads = {"No.", "項目名", "物理名", "型", "桁数", "分類", "備考", "日付"};

void writeForm(lxw_workbook* book, lxw_worksheet* sheet) {
  lxw_format* title = workbook_add_format(book);
  format_set_bold(title);
  format_set_font_size(title, 16);
  lxw_format* cell = workbook_add_format(book);
  format_set_border(cell, LXW_BORDER_THIN);
  format_set_text_wrap(cell);
  worksheet_merge_range(sheet, 0, 0, 0, 1, "定義書", title);
  for (std::size_t i = 0; i < kHeads.size(); ++i) {
    worksheet_write_string(sheet, kFirstRow - 1, static_cast<lxw_col_t>(i), kHeads[i], title);
  }
  for (lxw_row_t row = kFirstRow; row <= kLastRow; ++row) {
    for (lxw_col_t column = 0; column < 8; ++column) worksheet_write_blank(sheet, row, column, cell);
    worksheet_write_number(sheet, row, 4, static_cast<double>(row - kFirstRow + 1), cell);
    worksheet_set_row(sheet, row, 18, nullptr);
  }
  worksheet_write_formula(sheet, 50, 4, "=SUM(E10:E49)", nullptr);
  worksheet_merge_range(sheet, 51, 0, 51, 3, "備考欄", cell);
  worksheet_write_url(sheet, 52, 0, "https://example.org/", nullptr);
  worksheet_write_comment(sheet, 52, 1, "ここに承認印");
  lxw_rich_string_tuple plain{nullptr, const_cast<char*>("ここは")};
  lxw_rich_string_tuple bold{title, const_cast<char*>("太字")};
  std::array<lxw_rich_string_tuple*, 3> rich = {&plain, &bold, nullptr};
  worksheet_write_rich_string(sheet, 52, 2, rich.data(), nullptr);
}

void writeRules(lxw_workbook* book, lxw_worksheet* sheet) {
  lxw_data_validation validation{};
  validation.validate = LXW_VALIDATION_TYPE_LIST;
  std::array<const char*, 4> choices = {"マスタ", "実績", "その他", nullptr};
  validation.value_list = const_cast<char**>(choices.data());
  worksheet_data_validation_range(sheet, kFirstRow, 5, kLastRow, 5, &validation);

  lxw_format* red = workbook_add_format(book);
  format_set_font_color(red, LXW_COLOR_RED);
  lxw_conditional_format condition{};
  condition.type = LXW_CONDITIONAL_TYPE_CELL;
  condition.criteria = LXW_CONDITIONAL_CRITERIA_GREATER_THAN;
  condition.value = 30;
  condition.format = red;
  worksheet_conditional_format_range(sheet, kFirstRow, 4, kLastRow, 4, &condition);
  lxw_conditional_format bar{};
  bar.type = LXW_CONDITIONAL_DATA_BAR;
  bar.data_bar_2010 = LXW_TRUE;
  worksheet_conditional_format_range(sheet, kFirstRow, 0, kLastRow, 0, &bar);

  worksheet_autofilter(sheet, kFirstRow - 1, 0, kLastRow, 7);
  worksheet_print_area(sheet, 0, 0, 69, 7);
  worksheet_repeat_rows(sheet, 0, 8);
  worksheet_set_header(sheet, "&L会社名&R&D");
  worksheet_set_landscape(sheet);
  workbook_define_name(book, "明細", "=様式!$A$10:$H$49");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: make_xlsxwriter RESULT PICTURE [MACROS]\n";
    return 2;
  }
  lxw_workbook* book = workbook_new(argv[1]);
  lxw_worksheet* sheet = workbook_add_worksheet(book, "様式");
  lxw_worksheet* other = workbook_add_worksheet(book, "集計");
  if (argc > 3) workbook_add_vba_project(book, argv[3]);
  writeForm(book, sheet);
  writeRules(book, sheet);
  worksheet_insert_image(sheet, 53, 1, argv[2]);

  lxw_chart* chart = workbook_add_chart(book, LXW_CHART_COLUMN);
  chart_add_series(chart, "=様式!$A$10:$A$49", "=様式!$E$10:$E$49");
  worksheet_insert_chart(sheet, 55, 3, chart);
  worksheet_write_formula(other, 0, 0, "=SUM(様式!E10:E49)", nullptr);
  worksheet_write_formula(other, 1, 0, "=様式!E51", nullptr);
  worksheet_write_string(other, 2, 0, "手を触れない", nullptr);

  lxw_chart* alone = workbook_add_chart(book, LXW_CHART_LINE);
  chart_add_series(alone, nullptr, "=様式!$E$10:$E$49");
  chartsheet_set_chart(workbook_add_chartsheet(book, "図"), alone);
  if (const lxw_error error = workbook_close(book); error != LXW_NO_ERROR) {
    std::cerr << lxw_strerror(error) << "\n";
    return 1;
  }
  return 0;
}
