#include "excel/er_book.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "excel/er_parts.h"
#include "workbook/sheet_drawing.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr double kMarkColumnWidth = 2.13;
constexpr double kPictureScale = 0.56;
constexpr double kObjectScale = 0.99;
constexpr double kPointsPerPixel = 72.0 / 96.0;

/// What tells the two forms of embedded books apart.
struct BookForm {
  std::string_view ending;
  bool newTitles;  ///< a title may end in a full stop and spans all columns
};

/// What all boxes of a run are made from.
struct BoxMaker {
  Session& session;
  FontBook& fonts;
  const ErChoice& choice;
  const BookForm& form;
  std::string keyPicture;  ///< the bytes of key.bmp; empty without one
};

/// A finished box: the book, the picture that shows it, and its size.
struct ErBox {
  std::string book;
  std::string preview;
  Box size;
};

std::vector<ErField> shownFields(const ErTable& table, const ErChoice& choice) {
  std::vector<ErField> shown;
  if (choice.fields == ErFields::TitleOnly) return shown;
  for (const ErField& field : table.fields) {
    if (choice.fields == ErFields::KeysOnly && !field.key) continue;
    if (choice.foreignOnly && !field.foreign) continue;
    shown.push_back(field);
  }
  return shown;
}

std::string markedName(const ErField& field) {
  return std::string(field.key ? "(PK)" : "") + (field.foreign ? "(FK)" : "") + field.name;
}

/// The size of a Windows bitmap in points.
Box pictureSize(const std::string& bmp) {
  const auto pixels = [&bmp](std::size_t at) {
    double value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value * 256 + static_cast<unsigned char>(bmp[at + i]);
    return value;
  };
  constexpr std::size_t kWidthAt = 18;
  constexpr std::size_t kHeightAt = 22;
  if (bmp.size() < kHeightAt + 4) return {};
  return {0, 0, pixels(kWidthAt) * kPointsPerPixel, pixels(kHeightAt) * kPointsPerPixel};
}

/// Widths that hold the longest text of each column.
void fitColumns(Worksheet& sheet, FontBook& fonts, const std::vector<ErField>& fields, const std::string& title,
                int columns) {
  constexpr double kRoom = 1.5;  // digits beside the text
  constexpr double kLeast = 8;
  constexpr double kMost = 60;
  const SizedFont font = erFont();
  const double digit = digitWidth(fonts, font);
  double name = 0;
  double second = 0;
  for (const ErField& field : fields) {
    name = std::max(name, textWidth(fonts, font, markedName(field)));
    second = std::max(second, textWidth(fonts, font, field.second));
  }
  // The title may shrink, but not to half its size.
  const double least = std::max(kLeast, textWidth(fonts, font, title) / digit * 0.8 - kMarkColumnWidth);
  const auto width = [&](double points, double leastWidth) {
    return std::clamp(points / digit + kRoom, leastWidth, kMost);
  };
  sheet.setDefaultRowHeight(linesHeight(fonts, font, 1));
  sheet.setColumnWidth(1, 1, kMarkColumnWidth);
  sheet.setColumnWidth(2, 2, width(name, std::min(least, kMost)));
  if (columns == 3) sheet.setColumnWidth(3, 3, width(second, kLeast));
}

void frame(Worksheet& sheet, const CellRange& used) {
  for (const BorderIndex diagonal : {BorderIndex::DiagonalDown, BorderIndex::DiagonalUp}) {
    sheet.setBorder(used, diagonal, BorderLine());
  }
  for (const BorderIndex edge :
       {BorderIndex::EdgeLeft, BorderIndex::EdgeTop, BorderIndex::EdgeBottom, BorderIndex::EdgeRight}) {
    sheet.setBorder(used, edge, BorderLine::of(1, 2, -4105));
  }
}

std::vector<SheetPicture> keyPictures(const BoxMaker& maker, const SheetMeasure& measure,
                                      const std::vector<ErField>& fields) {
  std::vector<SheetPicture> pictures;
  if (maker.keyPicture.empty()) return pictures;
  const Box natural = pictureSize(maker.keyPicture);
  const double width = natural.width * kPictureScale;
  const double height = natural.height * kPictureScale;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!fields[i].key) continue;
    const int row = static_cast<int>(i) + 2;
    const double room = measure.rowHeight(row) - height;
    const Box place{(measure.columnWidth(1) - width) / 2, measure.rangeHeight(1, row - 1) + room / 2, width, height};
    pictures.push_back({fmt::format("key{}", row), place, maker.keyPicture, "bmp"});
  }
  return pictures;
}

ErBox makeBox(const BoxMaker& maker, const ErTable& table) {
  const AppSettings& settings = maker.session.settings;
  const std::vector<ErField> fields = shownFields(table, maker.choice);
  const int columns = maker.choice.fields == ErFields::TwoColumns ? 3 : 2;
  const std::string title = "【" + table.name + (maker.form.newTitles && maker.choice.dotTitle ? "】." : "】");
  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = "ER", .fontName = font.family, .fontSize = font.size});
  Worksheet& sheet = book.sheet(0);
  sheet.setShowGridLines(false);
  fitColumns(sheet, maker.fonts, fields, title, columns);

  const auto fill = [&sheet](const CellRange& range, int colourIndex) {
    sheet.changeStyle(range,
                      [colourIndex](CellStyle& style) { style.fill = CellFill::solid(CellColor::index(colourIndex)); });
  };
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int row = static_cast<int>(i) + 2;
    if (fields[i].key) fill({{row, 2}, {row, columns}}, settings.backColorKeyIndex);
    sheet.setText({row, 2}, markedName(fields[i]));
    if (columns == 3) sheet.setText({row, 3}, fields[i].second);
  }
  const CellRange head({1, 1}, {1, columns});
  sheet.setText({1, 1}, title);
  sheet.merge(maker.form.newTitles ? head : rangeAt("A1:B1"));
  sheet.changeStyle(head, [](CellStyle& style) {
    style.alignment.horizontal = HorizontalAlign::Center;
    style.alignment.shrink = true;
    style.font.bold = true;
  });
  fill(head, settings.backColorTableNameIndex);
  const CellRange used({1, 1}, {static_cast<int>(fields.size()) + 1, columns});
  frame(sheet, used);
  sheet.setBorder(head, BorderIndex::EdgeBottom, BorderLine::of(1, 2, -4105));

  const SheetMeasure measure(book, 0, maker.fonts);
  Drawing drawing;
  drawing.pictures = keyPictures(maker, measure, fields);
  if (!drawing.empty()) addDrawing(book, 0, drawing, maker.fonts);
  book.setVisibleRange(used);
  const Box size{0, 0, measure.rangeWidth(1, columns) * kObjectScale,
                 measure.rangeHeight(1, used.last.row) * kObjectScale};
  return {book.bytes(), previewOf(book, 0, used, maker.fonts, drawing.pictures), size};
}

std::string keyPicture(const Host& host) {
  std::error_code error;
  return readFile(host.machine.programFolder / "key.bmp", error).value_or("");
}

std::string putEmbeddedBooks(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                             const ErChoice& choice, const BookForm& form) {
  session.log.gPutLog(host, "---------------------------------------");
  const std::string path = erFile(session, host, run, choice.bookName, form.ending);
  if (path.empty()) return "";
  bool stopped = false;
  const std::vector<ErTable> tables = readErTables(session, host, list, detail, stopped);
  if (stopped) return endStopped(host, run);

  const BoxMaker maker{session, run.fonts, choice, form, keyPicture(host)};
  Drawing drawing;
  std::vector<Box> sizes;
  for (const ErTable& table : tables) {
    if (host.dialogs.stopRequested()) return endStopped(host, run);
    ErBox box = makeBox(maker, table);
    sizes.push_back(box.size);
    drawing.objects.push_back(
        {table.name, {}, std::move(box.book), std::move(box.preview), session.settings.excelObject2SetKage, 0.75});
    session.log.gPutLog(host, "OLE Insert FileExcel_ER:" + table.name);
  }
  const auto chosen = static_cast<std::size_t>(std::ranges::count(tables, false, &ErTable::extra));
  const std::vector<Box> places = placeErBoxes(sizes, chosen, erGapUnit(run.fonts, erFont()));
  for (std::size_t i = 0; i < places.size(); ++i) drawing.objects[i].box = places[i];

  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = erSheetName(list), .fontName = font.family, .fontSize = font.size});
  book.sheet(0).select(cellAt("A1"));
  book.sheet(0).setShowGridLines(false);
  session.log.gPutLog(host, "PageSetUp FileExcel_ER:" + path);
  setUpErPage(book.sheet(0), host.clock.now());
  addDrawing(book, 0, drawing, run.fonts);
  session.log.gPutLog(host, "Save FileExcel_ER:" + path);
  saveBook(session, host, book, session.gCurrentSystemName, path, host.dialogs.stopRequested);
  session.log.gPutLog(host, "Normal End");
  return path;
}

}  // namespace

std::string pPutExcel2ER(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                         const ErChoice& choice) {
  constexpr BookForm kForm{"_ER.xlsx", true};
  return runErForm(session, host, run, choice.openAfter, true,
                   [&] { return putEmbeddedBooks(session, host, run, list, detail, choice, kForm); });
}

std::string pPutExcel2ERMemoryExtend(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                     frmTBDetail& detail, const ErChoice& choice) {
  constexpr BookForm kForm{"_ER.xls", false};
  return runErForm(session, host, run, choice.openAfter, false,
                   [&] { return putEmbeddedBooks(session, host, run, list, detail, choice, kForm); });
}

}  // namespace quillmarden
