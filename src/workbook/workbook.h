#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/package.h"
#include "workbook/style.h"
#include "workbook/worksheet.h"

namespace quillmarden {

/// The document's properties; times as "2026-11-24T09:00:00Z". Empty fields leave what is there.
struct DocumentProperties {
  std::string title{};
  std::string creator{};
  std::string lastModifiedBy{};
  std::string created{};
  std::string modified{};
};

/// A name of the book: "_xlnm.Print_Area", or one that a person gave.
struct DefinedName {
  std::string name;
  int sheet = -1;  ///< the sheet it belongs to, from 0; -1 for the book
  std::string formula;
  std::string otherAttributes;  ///< as XML, with a leading blank
};

/// How a new book looks.
struct NewBook {
  std::string sheetName = "Sheet1";
  std::string fontName = "ＭＳ Ｐゴシック";
  double fontSize = 11;
};

/// A workbook in memory. Sheets count from 0. All faults come as WorkbookError. A book and its clones belong to one
/// thread.
class Workbook {
 public:
  static Workbook create(const NewBook& look = {});
  /// By what is in the file, whatever its name says.
  static Workbook open(const std::filesystem::path& file);
  static Workbook fromBytes(std::string bytes, const PackageLimits& limits = {});

  Workbook(Workbook&&) noexcept;
  Workbook& operator=(Workbook&&) noexcept;
  ~Workbook();

  /// A book of its own that shares all unchanged parts with this one, and what was already taken apart: filling many
  /// books from one template costs one reading.
  Workbook clone() const;

  int sheetCount() const;
  /// BadValue for a number that is none. A chart sheet has a name and a place, but no cells.
  Worksheet& sheet(int index);
  const Worksheet& sheet(int index) const;
  /// Case ignored; -1 when there is none.
  int findSheet(std::string_view name) const;
  bool isWorksheet(int index) const;

  /// Appends an empty sheet. References to sheets stay good until their sheet is removed or the book goes.
  Worksheet& addSheet(std::string_view name);
  /// Renames the sheet where formulas, names and charts speak of it, too. BadSheetName for a name that can't be one or
  /// is taken.
  void renameSheet(int index, std::string_view name);
  /// Removes the sheet with the parts that only it uses; formulas that speak of it show "#REF!". BadValue for the
  /// last one.
  void removeSheet(int index);
  /// Copies a sheet of this or another book with formats, texts, drawings, pictures, comments, print set-up, and puts
  /// it before the sheet `before` (sheetCount() for the end). A taken name gets " (2)". References to sheets that this
  /// book lacks become "#REF!".
  Worksheet& copySheetFrom(const Workbook& source, int sheet, int before);

  int activeSheet() const;
  void setActiveSheet(int index);

  /// The format's number in this book, added to its lists when it is new.
  StyleId style(const CellStyle& style);
  CellStyle styleAt(StyleId id) const;

  std::vector<DefinedName> definedNames() const;
  /// Replaces the name of that sheet (or of the book), or adds it; an empty formula removes it.
  void setDefinedName(const DefinedName& name);

  /// The cells of the active sheet that the book shows where it stands in another document as an object.
  void setVisibleRange(const CellRange& range);

  DocumentProperties properties() const;
  void setProperties(const DocumentProperties& properties);

  /// Makes of a template or a book with macros what is saved as a plain workbook: macros go, the type is told anew.
  void makePlain();

  /// The parts, for what this model has no words for. Sheets, styles, shared strings and the workbook part are written
  /// over when they were changed here.
  Package& package();
  const Package& package() const;
  /// The name of a sheet's part.
  std::string sheetPart(int index) const;
  /// Adds a relationship from a sheet to a part and gives its id.
  std::string relateSheet(int index, std::string_view type, std::string_view target);
  /// The sheet's drawing part, made and tied to the sheet when it has none. Its root is xdr:wsDr.
  std::string drawingPart(int index);
  /// The sheet's legacy (VML) drawing; "" when there is none yet.
  std::string legacyDrawingPart(int index) const;
  /// Makes `xml` the sheet's legacy drawing, a new part when it has none. Gives the name.
  std::string setLegacyDrawing(int index, std::string xml);
  /// Adds a picture or an embedded book under xl/media or xl/embeddings; equal bytes are stored once. Gives the name.
  std::string addMedia(std::string bytes, std::string_view extension);
  /// As addMedia, with bytes that are made each time that the book is written; every one is stored.
  std::string addMedia(std::function<std::string()> make, std::string_view extension);

  /// The whole book as a package; the same content gives the same bytes.
  std::string bytes() const;
  /// Takes the file's place when it is whole; on failure, or when `stop` says yes on the way, the former file stays.
  void save(const std::filesystem::path& file, const StopCheck& stop = {}) const;

 private:
  explicit Workbook(std::unique_ptr<BookState> state);

  std::unique_ptr<BookState> state_;
};

}  // namespace quillmarden
