#include "desktop/spread_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QValidator>
#include <algorithm>

#include "common/text.h"
#include "common/typed_cell.h"
#include "desktop/binder.h"
#include "desktop/spread_model.h"

namespace quillmarden {

namespace {

constexpr int kTextMargin = 4;
constexpr int kFrameWidth = 2;
constexpr int kSelectionAlpha = 60;

CellKind kindOf(const QModelIndex& index) { return static_cast<CellKind>(index.data(SpreadModel::kKindRole).toInt()); }

/// Lets nothing but a number within limits, or nothing at all, into a cell. Full-width digits that an input method
/// left become plain ones.
class NumberValidator : public QValidator {
 public:
  NumberValidator(bool whole, double minimum, double maximum, QObject* parent)
      : QValidator(parent), whole_(whole), minimum_(minimum), maximum_(maximum) {}

  State validate(QString& input, int&) const override {
    QString narrow = toQt(toNarrow(fromQt(input))).remove(',').trimmed();
    if (narrow != input && !narrow.contains(' ')) input = narrow;
    if (input.isEmpty()) return Acceptable;
    if (input == "-") return minimum_ < 0 ? Intermediate : Invalid;
    if (input == "." || input == "-.") return whole_ ? Invalid : Intermediate;
    for (qsizetype i = 0; i < input.size(); ++i) {
      const QChar c = input[i];
      const bool sign = c == '-' && i == 0 && minimum_ < 0;
      if (!(c >= '0' && c <= '9') && !sign && (whole_ || c != '.')) return Invalid;
    }
    bool isNumber = false;
    const double value = input.toDouble(&isNumber);
    if (!isNumber || value > maximum_) return Invalid;
    return value < minimum_ ? Intermediate : Acceptable;
  }

 private:
  bool whole_;
  double minimum_;
  double maximum_;
};

QRect indicatorRect(const QStyleOptionViewItem& option) {
  const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
  const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget),
                   style->pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget));
  QRect box({}, size);
  box.moveCenter(option.rect.center());
  return box;
}

void paintCheck(QPainter* painter, const QStyleOptionViewItem& option, bool checked) {
  QStyleOptionViewItem box(option);
  box.rect = indicatorRect(option);
  box.state &= ~(QStyle::State_HasFocus | QStyle::State_Selected);
  box.state |= checked ? QStyle::State_On : QStyle::State_Off;
  const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
  style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, option.widget);
}

/// A small mark at the right edge: this cell has a list.
void paintListMark(QPainter* painter, const QRect& cell, const QColor& colour) {
  const QPoint at(cell.right() - 8, cell.center().y());
  painter->setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap));
  painter->drawLine(at + QPoint(-3, -1), at + QPoint(0, 2));
  painter->drawLine(at + QPoint(0, 2), at + QPoint(3, -1));
}

bool isCurrent(const QStyleOptionViewItem& option, const QModelIndex& index) {
  const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
  return view && view->currentIndex() == index;
}

CellStep stepOf(const QKeyEvent& key, bool typing) {
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return key.modifiers() & Qt::ShiftModifier ? CellStep::Up : CellStep::Down;
    case Qt::Key_Tab:
      return CellStep::Next;
    case Qt::Key_Backtab:
      return CellStep::Previous;
    case Qt::Key_Up:
      return typing ? CellStep::Up : CellStep::Stay;
    case Qt::Key_Down:
      return typing ? CellStep::Down : CellStep::Stay;
    case Qt::Key_Left:
      return typing ? CellStep::Left : CellStep::Stay;
    case Qt::Key_Right:
      return typing ? CellStep::Right : CellStep::Stay;
    default:
      return CellStep::Stay;
  }
}

/// The entry that the text means: the one that equals it but for case and blanks, else the first that begins with it,
/// unless other texts are taken as well. -1 for none.
int entryOf(const QComboBox& list, const QString& text, bool open) {
  const QString wanted = text.trimmed();
  for (int i = 0; i < list.count(); ++i)
    if (list.itemText(i).trimmed().compare(wanted, Qt::CaseInsensitive) == 0) return i;
  if (wanted.isEmpty() || open) return -1;
  for (int i = 0; i < list.count(); ++i)
    if (list.itemText(i).startsWith(wanted, Qt::CaseInsensitive)) return i;
  return -1;
}

/// What an editor's text means for the cell.
QString textOf(const QWidget* editor, const QModelIndex& index) {
  if (const auto* list = qobject_cast<const QComboBox*>(editor)) {
    const int entry = entryOf(*list, list->currentText(), index.data(SpreadModel::kOpenRole).toBool());
    return entry >= 0 ? list->itemText(entry) : list->currentText();
  }
  if (const auto* lines = qobject_cast<const QPlainTextEdit*>(editor)) return lines->toPlainText();
  const auto* line = qobject_cast<const QLineEdit*>(editor);
  return line ? line->text() : QString();
}

qsizetype widthOf(const QString& text) { return static_cast<qsizetype>(gLenB(fromQt(text))); }

/// A text after an edit that ended at `cursor`, without what goes beyond `length` bytes: the end of what was just put
/// in. A text that was too long before can only become shorter. The cursor moves along.
QString within(const QString& text, const QString& former, int length, qsizetype& cursor) {
  if (widthOf(text) <= length) return text;
  if (widthOf(former) > length) {
    if (widthOf(text) < widthOf(former)) return text;
    cursor = std::min(cursor, former.size());
    return former;
  }
  const QString behind = text.mid(cursor);
  const auto room = static_cast<std::size_t>(std::max<qsizetype>(length - widthOf(behind), 0));
  const QString before = toQt(gMidB(fromQt(text.left(cursor)), 1, room));
  cursor = before.size();
  return before + behind;
}

}  // namespace

SpreadDelegate::SpreadDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

void SpreadDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QPalette& palette = option.palette;
  const bool current = isCurrent(option, index);
  const CellKind kind = kindOf(index);
  painter->save();
  if (const QVariant back = index.data(Qt::BackgroundRole); back.isValid())
    painter->fillRect(option.rect, back.value<QColor>());
  if ((option.state & QStyle::State_Selected) && !current) {
    QColor tint = palette.color(QPalette::Highlight);
    tint.setAlpha(kSelectionAlpha);
    painter->fillRect(option.rect, tint);
  }
  if (kind == CellKind::Check) {
    paintCheck(painter, option, index.data(Qt::CheckStateRole).toInt() == Qt::Checked);
  } else {
    QRect place = option.rect.adjusted(kTextMargin, 0, -kTextMargin, 0);
    if (current && kind == CellKind::List) {
      paintListMark(painter, option.rect, palette.color(QPalette::Text));
      place.setRight(place.right() - 12);
    }
    const QString line = index.data(Qt::DisplayRole).toString().replace('\n', QChar(0x23CE));
    painter->setFont(option.font);
    const QVariant own = index.data(Qt::ForegroundRole);
    painter->setPen(own.isValid() ? own.value<QColor>() : palette.color(QPalette::Text));
    painter->drawText(place, index.data(Qt::TextAlignmentRole).toInt() | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(line, Qt::ElideRight, place.width()));
  }
  if (current) {
    painter->setPen(QPen(palette.color(QPalette::Highlight), kFrameWidth));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
  }
  painter->restore();
}

bool SpreadDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) {
  if (kindOf(index) != CellKind::Check || !(index.flags() & Qt::ItemIsUserCheckable)) return false;
  if (event->type() != QEvent::MouseButtonRelease) return false;
  const auto* mouse = static_cast<QMouseEvent*>(event);
  if (mouse->button() != Qt::LeftButton || mouse->modifiers() != Qt::NoModifier ||
      !indicatorRect(option).contains(mouse->position().toPoint()))
    return false;
  const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  return model->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

QWidget* SpreadDelegate::listEditor(QWidget* parent, const QModelIndex& index) const {
  auto* list = new QComboBox(parent);
  list->setFrame(false);
  list->setEditable(true);
  list->setInsertPolicy(QComboBox::NoInsert);
  list->addItems(index.data(SpreadModel::kEntriesRole).toStringList());
  list->completer()->setCompletionMode(QCompleter::InlineCompletion);
  connect(list, &QComboBox::activated, this, [this, list] {
    auto* self = const_cast<SpreadDelegate*>(this);
    self->finish(list, CellStep::Stay);
    if (entryPicked) entryPicked();
  });
  return list;
}

QWidget* SpreadDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const {
  const CellKind kind = kindOf(index);
  QWidget* editor = nullptr;
  if (kind == CellKind::List) {
    editor = listEditor(parent, index);
  } else if (kind == CellKind::Edit && index.data(Qt::EditRole).toString().contains('\n')) {
    auto* lines = new QPlainTextEdit(parent);
    limit(lines, index);
    editor = lines;
  } else {
    auto* line = new QLineEdit(parent);
    line->setFrame(false);
    line->setTextMargins(kTextMargin - 2, 0, kTextMargin - 2, 0);
    if (kind == CellKind::Edit) limit(line, index);
    if (kind == CellKind::Integer || kind == CellKind::Float) {
      line->setAlignment(Qt::AlignRight);
      line->setInputMethodHints(Qt::ImhPreferNumbers);
      line->setValidator(new NumberValidator(kind == CellKind::Integer,
                                             index.data(SpreadModel::kMinimumRole).toDouble(),
                                             index.data(SpreadModel::kMaximumRole).toDouble(), line));
    }
    editor = line;
  }
  edited_ = index;
  // The editor lies in the cell's place: no room for the frame that fields have elsewhere.
  editor->setStyleSheet(QStringLiteral("border: 0; border-radius: 0; padding: 0;"));
  editor->setAutoFillBackground(true);
  return editor;
}

void SpreadDelegate::tellLimit(const QModelIndex& index) const {
  const int length = index.data(SpreadModel::kMaxLengthRole).toInt();
  if (tellFault) tellFault(index, toQt(limitText(length) + "までです."));
}

void SpreadDelegate::limit(QLineEdit* line, const QModelIndex& index) const {
  const int length = index.data(SpreadModel::kMaxLengthRole).toInt();
  if (length <= 0) return;
  connect(line, &QLineEdit::textEdited, this,
          [=, this, former = index.data(Qt::EditRole).toString(),
           cell = QPersistentModelIndex(index)](const QString& text) mutable {
            qsizetype cursor = line->cursorPosition();
            const QString kept = within(text, former, length, cursor);
            former = kept;
            if (kept == text) return;
            line->setText(kept);
            line->setCursorPosition(static_cast<int>(cursor));
            tellLimit(cell);
          });
}

void SpreadDelegate::limit(QPlainTextEdit* lines, const QModelIndex& index) const {
  const int length = index.data(SpreadModel::kMaxLengthRole).toInt();
  if (length <= 0) return;
  connect(lines, &QPlainTextEdit::textChanged, this,
          [=, this, former = index.data(Qt::EditRole).toString(), cell = QPersistentModelIndex(index)]() mutable {
            const QString text = lines->toPlainText();
            qsizetype at = lines->textCursor().position();
            const QString kept = within(text, former, length, at);
            former = kept;
            if (kept == text) return;
            const QSignalBlocker quiet(lines);
            lines->setPlainText(kept);
            QTextCursor cursor = lines->textCursor();
            cursor.setPosition(static_cast<int>(at));
            lines->setTextCursor(cursor);
            tellLimit(cell);
          });
}

void SpreadDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QString text = index.data(Qt::EditRole).toString();
  if (auto* list = qobject_cast<QComboBox*>(editor)) {
    list->setCurrentIndex(list->findText(text));
    list->setEditText(text);
    // What is typed takes the place of the cell's text, as in the other cells.
    list->lineEdit()->selectAll();
  } else if (auto* lines = qobject_cast<QPlainTextEdit*>(editor)) {
    lines->setPlainText(text);
  } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
    line->setText(text);
  }
}

void SpreadDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
  const auto* line = qobject_cast<const QLineEdit*>(editor);
  if (!line || line->hasAcceptableInput()) model->setData(index, textOf(editor, index), Qt::EditRole);
}

void SpreadDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                          const QModelIndex&) const {
  QRect place = option.rect;
  if (qobject_cast<QPlainTextEdit*>(editor)) {
    constexpr int kLines = 4;
    place.setHeight(place.height() * kLines);
    if (const QWidget* around = editor->parentWidget(); place.bottom() > around->rect().bottom())
      place.moveBottom(std::max(around->rect().bottom(), place.height()));
  }
  editor->setGeometry(place);
}

void SpreadDelegate::finish(QWidget* editor, CellStep step) {
  // What a cell does not take stays in the editor, so that it can be put right.
  if (const QString fault = faultOf ? faultOf(edited_, textOf(editor, edited_)) : QString(); !fault.isEmpty()) {
    if (tellFault) tellFault(edited_, fault);
    return;
  }
  Q_EMIT commitData(editor);
  Q_EMIT closeEditor(editor, NoHint);
  if (leaveCell && step != CellStep::Stay) leaveCell(step);
}

bool SpreadDelegate::eventFilter(QObject* object, QEvent* event) {
  auto* editor = qobject_cast<QWidget*>(object);
  if (editor && event->type() == QEvent::KeyPress) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool isList = qobject_cast<QComboBox*>(editor) != nullptr;
    if (isList && key.key() == Qt::Key_Down && key.modifiers() & Qt::AltModifier) {
      static_cast<QComboBox*>(editor)->showPopup();
      return true;
    }
    if (key.key() == Qt::Key_F2) {
      typing_ = false;
      return true;
    }
    // A new line in a cell of several lines.
    if (qobject_cast<QPlainTextEdit*>(editor) && key.modifiers() & Qt::AltModifier) {
      if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        static_cast<QPlainTextEdit*>(editor)->insertPlainText(QStringLiteral("\n"));
        return true;
      }
    }
    // Up and down choose within a list.
    const bool arrowsLeave = typing_ && !isList;
    if (const CellStep step = stepOf(key, arrowsLeave); step != CellStep::Stay) {
      finish(editor, step);
      return true;
    }
  }
  return QStyledItemDelegate::eventFilter(object, event);
}

}  // namespace quillmarden
