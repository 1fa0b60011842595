#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/turn.h"
#include "screen/controls.h"

class QAbstractButton;
class QAbstractItemView;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace quillmarden {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// Ties the widgets of one view to the controls of its screen's record. What a person does is written into the record,
/// then the handler runs; what handlers leave in the record is shown, and only what differs from the widget is touched.
/// Widgets and record outlive the binder; a view owns it as a member.
class Binder {
 public:
  explicit Binder(Turn& turn);
  ~Binder();
  Binder(const Binder&) = delete;
  Binder& operator=(const Binder&) = delete;

  /// Binds a control under its name in the record, which becomes the widget's object name, and gives the widget back
  /// for the layout. The handler runs after: the text changed by a person (TextBox); a pick from the list (ComboBox;
  /// typing alone is only noted); a click (CheckBox, OptionButton, Button, MenuItem); another choice of rows, or a
  /// click on a chosen one (ListBox). The pairs: QLabel Label · QLineEdit or QPlainTextEdit TextBox · QAbstractButton
  /// CheckBox, OptionButton or Button · QAction MenuItem · QComboBox ComboBox · QAbstractItemView ListBox · QWidget
  /// Picture.
  template <typename Widget, typename Control>
  Widget* bind(std::string_view name, Widget* widget, Control& control, Handler handler = {}) {
    note(name, widget);
    attach(widget, control, std::move(handler));
    return widget;
  }
  /// A text of the record as the window's title.
  void bindTitle(QWidget* window, const std::string& caption);
  /// Anything else that is shown from the record: called at every refresh, it must look whether something changed.
  void onRefresh(Handler show);
  /// Names a control that has no widget of its own: a hidden one, or one that another binder or model shows.
  void unseen(std::initializer_list<std::string_view> names);

  /// A slot that runs a handler in its turn, for signals that are no control's own: double clicks, keys, drops.
  std::function<void()> act(Handler handler);
  /// The same when the event loop comes round again: for signals out of an item view, which must not see its model
  /// change under it.
  void later(Handler handler);

  /// Shows the record. Turn::refresh calls it after every handler.
  void refresh();
  /// The names of all controls bound or named as unseen.
  const std::vector<std::string>& bound() const { return names_; }

 private:
  void note(std::string_view name, QObject* widget);
  void attach(QLabel* widget, const Label& control, Handler handler);
  void attach(QWidget* widget, const Picture& control, Handler handler);
  void attach(QLineEdit* widget, TextBox& control, Handler handler);
  void attach(QPlainTextEdit* widget, TextBox& control, Handler handler);
  void attach(QAbstractButton* widget, CheckBox& control, Handler handler);
  void attach(QAbstractButton* widget, OptionButton& control, Handler handler);
  void attach(QAbstractButton* widget, Button& control, Handler handler);
  void attach(QAction* action, MenuItem& control, Handler handler);
  void attach(QComboBox* widget, ComboBox& control, Handler handler);
  void attach(QAbstractItemView* widget, ListBox& control, Handler handler);
  void show(Handler step);

  Turn& turn_;
  QObject context_;  ///< connections and queued calls end with the binder
  std::vector<Handler> steps_;
  std::vector<std::string> names_;
  bool refreshing_ = false;
};

}  // namespace quillmarden
