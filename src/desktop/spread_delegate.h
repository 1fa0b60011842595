#pragma once

#include <QStyledItemDelegate>
#include <functional>

namespace quillmarden {

/// Where a finished edit leads the person.
enum class CellStep { Stay, Next, Previous, Down, Up, Left, Right };

/// Paints and edits the cells of a SpreadModel by their kind. The selection is a tint over the cell's own colour, so
/// that a red cell stays red, and the current cell has a frame.
class SpreadDelegate : public QStyledItemDelegate {
 public:
  explicit SpreadDelegate(QObject* parent);

  /// An edit begun by typing ends with an arrow key, as in a spreadsheet; one begun with F2 keeps arrows to itself.
  void setTyping(bool typing) { typing_ = typing; }
  /// Called after an edit was taken, to go on to the next cell.
  std::function<void(CellStep)> leaveCell;
  /// An entry was picked from the list of a List cell.
  std::function<void()> entryPicked;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QWidget* listEditor(QWidget* parent, const QModelIndex& index) const;
  void finish(QWidget* editor, CellStep step);

  bool typing_ = false;
};

}  // namespace quillmarden
