#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/typed_cell.h"
#include "screen/spread.h"

namespace quillmarden {

/// A grid record as a Qt model. It reads the record cell by cell when the view asks and keeps no copy, so it must not
/// outlive it. Rows and columns count from 0 here and from 1 in the record. A change of the record shows with the next
/// refresh().
class SpreadModel : public QAbstractTableModel {
 public:
  enum Role { kKindRole = Qt::UserRole, kMaxLengthRole, kEntriesRole, kOpenRole, kMinimumRole, kMaximumRole };

  explicit SpreadModel(Spread& spread, QObject* parent = nullptr);

  /// Takes what changed in the record since the last call; cheap when nothing did.
  void refresh();
  /// Shows an empty row below the last one, into which a person types a new row. Not on a locked grid.
  void setGrows(bool grows);
  bool grows() const { return grows_; }

  /// Called with the record's column and row and the new text, instead of writing the text straight to the record.
  std::function<void(int col, int row, std::string_view text)> writeCell;
  /// Called with why a cell does not take a text that was typed into it.
  std::function<void(const QModelIndex& index, const QString& fault)> refused;
  /// Called by refresh() after titles, widths or hidden columns changed.
  std::function<void()> columnsChanged;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  const Spread& spread() const { return spread_; }
  /// The kind as the person meets it: that of the column in the row that waits for a new row.
  CellKind kindAt(const QModelIndex& index) const;
  /// What a text becomes in the cell. A fault has the column's title before it.
  TypedCell typed(const QModelIndex& index, std::string_view text) const;
  QString faultOf(const QModelIndex& index, const QString& text) const;
  bool editable(const QModelIndex& index) const { return kindAt(index) != CellKind::Static; }

 private:
  struct ColumnLook {
    std::string title;
    double width = 0;
    bool hidden = false;
    bool operator==(const ColumnLook&) const = default;
  };
  std::vector<ColumnLook> columnLooks() const;
  int wantedRows() const;
  void takeRows(int rows);
  QVariant background(const QModelIndex& index) const;
  QVariant shownText(const QModelIndex& index) const;

  Spread& spread_;
  // What the views were told. The record may be ahead of it until the next refresh.
  int rows_ = 0;
  int columns_ = 0;
  std::vector<ColumnLook> looks_;
  long revision_ = -1;
  bool locked_ = false;
  bool grows_ = false;
};

}  // namespace quillmarden
