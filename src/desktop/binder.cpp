#include "desktop/binder.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QWidget>
#include <algorithm>
#include <memory>
#include <utility>

#include "desktop/list_model.h"
#include "desktop/theme.h"

namespace quillmarden {
namespace {

void showEnabled(QWidget* widget, bool enabled) {
  if (widget->isEnabledTo(widget->parentWidget()) != enabled) widget->setEnabled(enabled);
}

void showVisible(QWidget* widget, bool visible) {
  if (widget->isHidden() == visible) widget->setVisible(visible);
}

void showChecked(QAbstractButton* widget, bool checked) {
  if (widget->isChecked() == checked) return;
  const QSignalBlocker quiet(widget);
  // One of a group of option buttons cannot be let go by itself.
  const bool exclusive = widget->autoExclusive();
  widget->setAutoExclusive(exclusive && checked);
  widget->setChecked(checked);
  widget->setAutoExclusive(exclusive);
}

/// The view's own style of a label, and the record's colours above it.
QString labelStyle(QString style, const Label& control) {
  if (control.foreColour) style += "color:" + toText(*control.foreColour).name() + ";";
  if (control.backColour) style += "background:" + toBackground(*control.backColour).name() + ";";
  return style;
}

void showEntries(QComboBox* widget, const std::vector<std::string>& entries) {
  bool same = widget->count() == static_cast<int>(entries.size());
  for (int row = 0; same && row < widget->count(); ++row)
    same = widget->itemText(row) == toQt(entries[static_cast<std::size_t>(row)]);
  if (same) return;
  QStringList texts;
  texts.reserve(static_cast<qsizetype>(entries.size()));
  for (const std::string& entry : entries) texts << toQt(entry);
  widget->clear();
  widget->addItems(texts);
  widget->setCurrentIndex(-1);
}

void showText(QComboBox* widget, const QString& text) {
  if (widget->currentText() == text && (widget->currentIndex() >= 0 || text.isEmpty())) return;
  const int place = widget->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (place != widget->currentIndex()) widget->setCurrentIndex(place);
  if (widget->isEditable() && widget->currentText() != text) widget->setEditText(text);
}

/// The rows of a view's selection, as the record keeps them.
std::vector<bool> selectedRows(const QItemSelectionModel& selection, int count) {
  std::vector<bool> rows(static_cast<std::size_t>(count));
  for (const QItemSelectionRange& range : selection.selection())
    for (int row = std::max(0, range.top()); row <= range.bottom() && row < count; ++row)
      rows[static_cast<std::size_t>(row)] = true;
  return rows;
}

/// Whether the present press on a list has been told of. One that changes nothing of the selection counts as well: a
/// click on the chosen row opens what that row stands for. A double click is a click and its repetition.
class PressWatch : public QObject {
 public:
  explicit PressWatch(QAbstractItemView* view) : QObject(view) { view->viewport()->installEventFilter(this); }
  bool told = false;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress) told = false;
    return false;
  }
};

QItemSelection selectionOf(const std::vector<bool>& rows, const QAbstractItemModel& model) {
  QItemSelection selection;
  const int count = std::min(static_cast<int>(rows.size()), model.rowCount());
  const int lastColumn = model.columnCount() - 1;
  for (int row = 0; row < count; ++row) {
    if (!rows[static_cast<std::size_t>(row)]) continue;
    const int top = row;
    while (row + 1 < count && rows[static_cast<std::size_t>(row + 1)]) ++row;
    selection.select(model.index(top, 0), model.index(row, lastColumn));
  }
  return selection;
}

void noteSelection(const QAbstractItemView* view, ListBox& control) {
  control.selected = selectedRows(*view->selectionModel(), control.count());
  const int current = view->currentIndex().row();
  control.listIndex = current < control.count() ? current : -1;
}

/// What the record says is selected. A list of one choice keeps it in listIndex alone.
std::vector<bool> wantedRows(const QAbstractItemView* view, const ListBox& control) {
  std::vector<bool> wanted = control.selected;
  wanted.resize(control.rows.size());
  if (view->selectionMode() == QAbstractItemView::SingleSelection) {
    std::fill(wanted.begin(), wanted.end(), false);
    if (control.listIndex >= 0 && control.listIndex < control.count())
      wanted[static_cast<std::size_t>(control.listIndex)] = true;
  }
  return wanted;
}

void showSelection(QAbstractItemView* view, const ListBox& control) {
  const QAbstractItemModel& model = *view->model();
  QItemSelectionModel& selection = *view->selectionModel();
  const int current = control.listIndex < control.count() ? control.listIndex : -1;
  if (view->currentIndex().row() != current) {
    selection.setCurrentIndex(current < 0 ? QModelIndex() : model.index(current, 0), QItemSelectionModel::NoUpdate);
    if (current >= 0) view->scrollTo(model.index(current, 0));
  }
  const std::vector<bool> wanted = wantedRows(view, control);
  if (selectedRows(selection, control.count()) != wanted)
    selection.select(selectionOf(wanted, model), QItemSelectionModel::ClearAndSelect);
}

}  // namespace

Binder::Binder(Turn& turn) : turn_(turn) { turn_.binders_.push_back(this); }

Binder::~Binder() { std::erase(turn_.binders_, this); }

void Binder::note(std::string_view name, QObject* widget) {
  names_.emplace_back(name);
  widget->setObjectName(toQt(name));
}

void Binder::unseen(std::initializer_list<std::string_view> names) {
  names_.insert(names_.end(), names.begin(), names.end());
}

void Binder::show(Handler step) {
  // Built widgets show their record from the start.
  refreshing_ = true;
  step();
  refreshing_ = false;
  steps_.push_back(std::move(step));
}

void Binder::refresh() {
  if (refreshing_) return;
  refreshing_ = true;
  for (const Handler& step : steps_) step();
  refreshing_ = false;
}

void Binder::onRefresh(Handler show) { this->show(std::move(show)); }

std::function<void()> Binder::act(Handler handler) {
  return [this, handler = std::move(handler)] { turn_.run(handler); };
}

void Binder::later(Handler handler) {
  QMetaObject::invokeMethod(
      &context_, [this, handler = std::move(handler)] { turn_.run(handler); }, Qt::QueuedConnection);
}

void Binder::bindTitle(QWidget* window, const std::string& caption) {
  show([window, &caption] {
    const QString text = toQt(caption);
    if (window->windowTitle() != text) window->setWindowTitle(text);
  });
}

void Binder::attach(QLabel* widget, const Label& control, Handler) {
  widget->setTextFormat(Qt::PlainText);
  show([widget, &control, own = widget->styleSheet()] {
    const QString text = toQt(control.caption);
    if (widget->text() != text) widget->setText(text);
    showVisible(widget, control.visible);
    const QString style = labelStyle(own, control);
    if (widget->styleSheet() != style) widget->setStyleSheet(style);
  });
}

void Binder::attach(QWidget* widget, const Picture& control, Handler) {
  show([widget, &control] { showVisible(widget, control.visible); });
}

void Binder::attach(QLineEdit* widget, TextBox& control, Handler handler) {
  QObject::connect(widget, &QLineEdit::textEdited, &context_, [this, &control, handler](const QString& text) {
    control.text = fromQt(text);
    if (handler) turn_.run(handler);
  });
  show([widget, &control] {
    const QString text = toQt(control.text);
    if (widget->text() != text) widget->setText(text);
    showEnabled(widget, control.enabled);
    if (widget->isReadOnly() != control.locked) widget->setReadOnly(control.locked);
  });
}

void Binder::attach(QPlainTextEdit* widget, TextBox& control, Handler handler) {
  QObject::connect(widget, &QPlainTextEdit::textChanged, &context_, [this, widget, &control, handler] {
    if (refreshing_) return;
    control.text = fromQt(widget->toPlainText());
    if (handler) turn_.run(handler);
  });
  show([widget, &control] {
    const QString text = toQt(control.text).replace("\r\n", "\n");
    if (widget->toPlainText() != text) widget->setPlainText(text);
    showEnabled(widget, control.enabled);
    if (widget->isReadOnly() != control.locked) widget->setReadOnly(control.locked);
  });
}

void Binder::attach(QAbstractButton* widget, CheckBox& control, Handler handler) {
  QObject::connect(widget, &QAbstractButton::clicked, &context_, [this, &control, handler](bool checked) {
    control.value = checked;
    if (handler) turn_.run(handler);
  });
  show([widget, &control] {
    showChecked(widget, control.value);
    showEnabled(widget, control.enabled);
  });
}

void Binder::attach(QAbstractButton* widget, OptionButton& control, Handler handler) {
  QObject::connect(widget, &QAbstractButton::toggled, &context_, [this, &control](bool checked) {
    if (!refreshing_) control.value = checked;
  });
  if (handler) QObject::connect(widget, &QAbstractButton::clicked, &context_, act(std::move(handler)));
  show([widget, &control] { showChecked(widget, control.value); });
}

void Binder::attach(QAbstractButton* widget, Button& control, Handler handler) {
  if (handler) QObject::connect(widget, &QAbstractButton::clicked, &context_, act(std::move(handler)));
  show([widget, &control] {
    showEnabled(widget, control.enabled);
    showVisible(widget, control.visible);
  });
}

void Binder::attach(QAction* action, MenuItem& control, Handler handler) {
  // A mark that a press has set on the widget goes back to what the record says after the handler. The handler waits
  // for the menu that the press may come from.
  if (handler)
    QObject::connect(action, &QAction::triggered, &context_, [this, handler = std::move(handler)] { later(handler); });
  show([action, &control] {
    if (action->isEnabled() != control.enabled) action->setEnabled(control.enabled);
    if (action->isVisible() != control.visible) action->setVisible(control.visible);
    if (control.checked && !action->isCheckable()) action->setCheckable(true);
    if (action->isChecked() != control.checked) action->setChecked(control.checked);
  });
}

void Binder::attach(QComboBox* widget, ComboBox& control, Handler handler) {
  QObject::connect(widget, &QComboBox::editTextChanged, &context_, [this, &control](const QString& text) {
    if (!refreshing_) control.text = fromQt(text);
  });
  QObject::connect(widget, &QComboBox::activated, &context_, [this, widget, &control, handler](int) {
    control.text = fromQt(widget->currentText());
    if (handler) turn_.run(handler);
  });
  show([widget, &control] {
    const QSignalBlocker quiet(widget);
    showEntries(widget, control.entries);
    showText(widget, toQt(control.text));
    showEnabled(widget, control.enabled);
  });
}

void Binder::attach(QAbstractItemView* widget, ListBox& control, Handler handler) {
  auto* model = dynamic_cast<ListModel*>(widget->model());
  if (!model) {
    model = new ListModel(control, {}, widget);
    widget->setModel(model);
  }
  // One press changes the selection and the current row; the handler is told of both together.
  const auto pending = std::make_shared<bool>(false);
  auto* press = new PressWatch(widget);
  const auto changed = [this, widget, &control, handler, pending, press] {
    if (refreshing_) return;
    press->told = true;
    noteSelection(widget, control);
    if (!handler || std::exchange(*pending, true)) return;
    QMetaObject::invokeMethod(
        &context_,
        [this, handler, pending] {
          *pending = false;
          turn_.run(handler);
        },
        Qt::QueuedConnection);
  };
  QObject::connect(widget, &QAbstractItemView::clicked, &context_, [changed, press] {
    if (!press->told) changed();
  });
  QObject::connect(widget->selectionModel(), &QItemSelectionModel::selectionChanged, &context_, changed);
  QObject::connect(widget->selectionModel(), &QItemSelectionModel::currentRowChanged, &context_, changed);
  show([widget, model, &control] {
    model->refresh();
    showSelection(widget, control);
    showEnabled(widget, control.enabled);
  });
}

}  // namespace quillmarden
