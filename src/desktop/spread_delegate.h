#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>
#include <functional>

class QLineEdit;
class QPlainTextEdit;

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
  /// Why a cell does not take the text of its editor, "" when it does. An edit that is to end with a key then stays
  /// open.
  std::function<QString(const QModelIndex& index, const QString& text)> faultOf;
  /// Tells it, beside the editor.
  std::function<void(const QModelIndex& index, const QString& fault)> tellFault;
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
  void limit(QLineEdit* line, const QModelIndex& index) const;
  void limit(QPlainTextEdit* lines, const QModelIndex& index) const;
  void tellLimit(const QModelIndex& index) const;

  bool typing_ = false;
  mutable QPersistentModelIndex edited_;  ///< the cell of the open editor
};

}  // namespace quillmarden
