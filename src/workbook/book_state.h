#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/lazy_shared.h"
#include "workbook/shared_strings.h"
#include "workbook/sheet_model.h"
#include "workbook/styles.h"
#include "workbook/workbook.h"
#include "workbook/xml_sections.h"

namespace quillmarden {

/// A sheet as the workbook part lists it.
struct SheetSlot {
  std::string name;
  std::string part;
  std::string relation;         ///< the relationship's id
  std::string otherAttributes;  ///< sheetId and state as XML, with a leading blank
  bool cells = true;            ///< no chart sheet
  bool touched = false;         ///< the model replaces the part
  LazyShared<SheetModel> model;
  LazyShared<bool> formulas;  ///< whether the part as it came has any
  std::vector<CellRef> cutTexts;
  std::unique_ptr<Worksheet> handle;
};

/// All of a workbook. What is taken apart is written back on saving where it was changed; until then the parts of
/// the package stand as they came.
struct BookState {
  Package package;
  std::string workbookPart;
  std::string styleSheetPart;
  std::string stringsPart;
  XmlSections xml;  ///< the workbook part
  std::vector<SheetSlot> slots;
  std::vector<DefinedName> names;
  bool sheetsChanged = false;
  bool namesChanged = false;
  bool xmlChanged = false;
  bool stylesChanged = false;
  bool stringsChanged = false;
  LazyShared<StyleTable> styleTable;
  LazyShared<StringPool> stringPool;

  static std::unique_ptr<BookState> open(Package package);
  std::unique_ptr<BookState> clone();
  /// Gives new sheets their handles, and all handles their places.
  void renewHandles();

  const SheetSlot& slot(int index) const;
  SheetSlot& slot(int index) { return const_cast<SheetSlot&>(std::as_const(*this).slot(index)); }
  int find(std::string_view name) const;

  const StringPool& strings() const;
  StringPool& editStrings();
  const StyleTable& styles() const;
  StyleTable& editStyles();
  /// Throws BadValue for a sheet that has no cells.
  const SheetModel& model(std::size_t index) const;
  /// Whether the sheet's part, as it came, has anything that can speak of other sheets.
  bool hasFormulas(std::size_t index) const;
  SheetModel& editModel(std::size_t index);

  /// Whether dates count from 1904.
  bool countsFrom1904() const;
  std::string relationType(std::string_view word) const;
  /// The package as it is to be written. Sheets and texts are read from this book while it is.
  Package finished() const;

 private:
  void readWorkbook();
  void readNames();
  void makePart(std::string& part, const std::string& word);
  std::string sheetsXml() const;
  std::string namesXml() const;
  std::string workbookXml(bool recalculate) const;
  bool recalculates() const;
};

/// The name, with a number behind it when the book has such a sheet already.
std::string freeSheetName(const BookState& book, std::string_view wanted);
/// Puts a new sheet before the sheet `before`, which may be one behind the last. Throws BadSheetName.
Worksheet& insertSheet(BookState& book, int before, const std::string& name, SheetModel model);
/// Marks a sheet as one of those that a person has chosen, or not.
void chooseSheet(BookState& book, std::size_t index, bool chosen);

/// The children of the workbook part's root element, in their order.
std::span<const std::string_view> workbookElementOrder();

/// An attribute as XML, with a leading blank.
std::string xmlAttribute(std::string_view name, std::string_view value);

}  // namespace quillmarden
