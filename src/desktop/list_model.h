#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include "screen/controls.h"

namespace quillmarden {

/// The rows of a ListBox as a table, read from the record when the view asks for them: a list of 10,000 rows costs no
/// more to show than one of ten. The parts of a row between tabs are the columns; the last column takes one part too,
/// so that what stands behind it, such as an ID, stays hidden. Without headings there is one column.
class ListModel : public QAbstractTableModel {
 public:
  explicit ListModel(const ListBox& list, QStringList headings = {}, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

  /// Takes over what changed in the record. True when the rows are other ones; views then have lost their selection.
  bool refresh();
  /// Other headings, as many as before.
  void setHeadings(const QStringList& headings);

 private:
  std::size_t fingerprint() const;

  const ListBox& list_;
  QStringList headings_;
  int rows_ = 0;  ///< as announced to views; the record may already hold others
  std::size_t shown_ = 0;
};

}  // namespace quillmarden
