#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "common/message.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "excel/format_file.h"
#include "excel/layout_names.h"
#include "excel/table_layout.h"
#include "excel/table_layout_parts.h"

namespace quillmarden {
namespace {

/// A grid column's place in the format, and whether its text goes behind what the cell holds: several columns may
/// share one place.
struct FieldPlace {
  int gridColumn;
  LayoutKey key;
  bool append;
};

constexpr std::array kFieldPlaces = {
    FieldPlace{field_col::kJapaneseName, LayoutKey::FieldJapaneseName, false},
    FieldPlace{field_col::kFieldName, LayoutKey::FieldName, false},
    FieldPlace{field_col::kKey, LayoutKey::KeyMark, false},
    FieldPlace{field_col::kType, LayoutKey::Type, false},
    FieldPlace{field_col::kWholeDigits, LayoutKey::WholeDigits, false},
    FieldPlace{field_col::kFractionDigits, LayoutKey::FractionDigits, false},
    FieldPlace{field_col::kNull, LayoutKey::NullMark, false},
    FieldPlace{field_col::kClass, LayoutKey::FieldClass, false},
    FieldPlace{field_col::kValueList, LayoutKey::ValueList, true},
    FieldPlace{field_col::kRemark, LayoutKey::Remark, true},
    FieldPlace{field_col::kForeign, LayoutKey::Reference, false},
    FieldPlace{field_col::kCreated, LayoutKey::FieldChangedAt, true},
};

/// The moments at which fields were made or changed, the table's first ones among them.
struct Changes {
  std::set<DateTime> moments;
  DateTime base;  ///< what is later was a change

  Changes(const frmTBDetail& detail, const DateTime& now) : base(now) {
    base.year += 1;
    for (int row = 1; row <= detail.Spread.maxRows(); ++row) {
      if (const auto moment = parseDateTime(detail.Spread.text(field_col::kCreated, row))) {
        moments.insert(*moment);
        base = std::min(base, *moment);
      }
    }
  }
};

std::string safeName(std::string_view japaneseName) { return gSafeFileName(japaneseName); }

CellRef placeOf(const LayoutFormat& format, LayoutKey key) { return cellAt(trim(format[key])); }

CellRef placeOf(const LayoutFormat& format, LayoutKey key, int row) {
  const std::string address = fmt::format("{}{}", trim(format[key]), row);
  return cellAt(address);
}

void putHeader(Worksheet& sheet, const LayoutFormat& format, const frmTBDetail& detail, std::string_view systemName,
               const TableDates& dates) {
  const auto put = [&](LayoutKey key, std::string_view text) { sheet.setEntered(placeOf(format, key), text); };
  put(LayoutKey::TableName, detail.txtTableNameENG.text);
  put(LayoutKey::JapaneseName, detail.txtTableNameJPN.text);
  put(LayoutKey::SystemName, systemName);
  put(LayoutKey::CreatedAt, dates.created);
  if (format.has(LayoutKey::ChangedAt)) put(LayoutKey::ChangedAt, dates.changed);
}

void putField(Worksheet& sheet, const LayoutFormat& format, const frmTBDetail& detail, const Changes& changes, int row,
              int sheetRow) {
  for (const FieldPlace& place : kFieldPlaces) {
    if (!format.has(place.key)) continue;
    std::string text(detail.Spread.text(place.gridColumn, row));
    if (place.gridColumn == field_col::kCreated) {
      const auto moment = parseDateTime(text);
      if (!moment || *moment <= changes.base) continue;
      text = "(" + text + ")";
    }
    const CellRef cell = placeOf(format, place.key, sheetRow);
    if (place.append) {
      // Nothing to add leaves what the template has there.
      if (!text.empty()) sheet.setText(cell, sheet.text(cell) + text);
    } else {
      sheet.setEntered(cell, text);
    }
  }
}

}  // namespace

std::string pPutCurrentTable2ExcelUserFormat(Session& session, Host& host, BookRun& run, const frmTBDetail& detail,
                                             const SystemRecord& system, std::string_view systemName) {
  LayoutFormat format;
  std::string errorText;
  if (gGetLayoutFormat(session, host, system.formatFile, format, errorText, true) == -1) {
    session.log.gPutLog(host, "×:ユーザー設定書式 取得失敗");
    run.formatFault = errorText.empty() ? "読み込めません." : errorText;
    return "";
  }
  const std::string name = safeName(detail.txtTableNameJPN.text);
  const std::string path = layoutPath(session, run, detail, system, safeName, ".xls");
  if (!mayReplaceOrTell(session, host, path)) return "";
  const TableDates dates = GetTableName作成変更日(session, detail.lblID.caption);
  const std::filesystem::path pattern = templatePath(host.machine, system.formatFile);
  if (!gFileExists(host, pattern.string(), false)) {
    gMsgBox(host, joinLines({"指定されたファイルが存在しません.", " " + pattern.string(), "確認してください."}),
            kStopIcon);
    return "";
  }
  Workbook book = openTemplate(run, pattern).clone();
  Worksheet& sheet = book.sheet(book.activeSheet());
  putHeader(sheet, format, detail, systemName, dates);

  const int start = static_cast<int>(gStr2Double(format[LayoutKey::StartRow]));
  const int rows = detail.Spread.maxRows();
  const int room = static_cast<int>(gStr2Double(format[LayoutKey::PageFields]));
  if (rows > room) {
    // The second field row is the pattern of those that are added above it.
    const int added = rows - room;
    sheet.insertRows(start + 1, added);
    for (int i = 1; i <= added; ++i) sheet.copyRow(start + 1 + added, start + i);
  }
  const Changes changes(detail, host.clock.now());
  if (format.has(LayoutKey::ChangeCount)) {
    sheet.setNumber(placeOf(format, LayoutKey::ChangeCount), static_cast<double>(changes.moments.size()));
  }
  for (int row = 1; row <= rows; ++row) {
    const int sheetRow = start + row - 1;
    if (format.has(LayoutKey::FieldNumber)) {
      sheet.setText(placeOf(format, LayoutKey::FieldNumber, sheetRow), fmt::format("{:03}", row));
    }
    putField(sheet, format, detail, changes, row, sheetRow);
  }
  sheet.select(cellAt("A1"));
  book.renameSheet(sheet.index(), cutSheetName(name));
  noteCutTexts(run, sheet, [&](CellRef cell) {
    const int row = cell.row - start + 1;
    return row < 1 || row > rows ? placeInTable(detail, "") : placeInTable(detail, row);
  });
  saveBook(session, host, book, detail.txtTableNameJPN.text, path);
  return path;
}

}  // namespace quillmarden
