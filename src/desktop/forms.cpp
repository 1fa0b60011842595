#include "desktop/forms.h"

#include <QApplication>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

namespace quillmarden {
namespace {

QHBoxLayout* plainRow(QWidget* around) {
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  return row;
}

/// As wide as its page at least, so that it scrolls in one direction alone.
class PageArea : public QScrollArea {
 public:
  explicit PageArea(QWidget* page) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(page);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
      if (now && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
    });
  }

  QSize minimumSizeHint() const override {
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 200};
  }
  QSize sizeHint() const override { return widget()->sizeHint(); }
};

}  // namespace

QFormLayout* fieldForm(QWidget* around) {
  auto* layout = new QFormLayout(around);
  if (around) layout->setContentsMargins(0, 0, 0, 0);
  layout->setHorizontalSpacing(12);
  layout->setVerticalSpacing(8);
  layout->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return layout;
}

QGroupBox* fieldGroup(const char* title) {
  auto* group = new QGroupBox(QString::fromUtf8(title));
  fieldForm(group)->setContentsMargins(12, 8, 12, 12);
  return group;
}

QFormLayout* fieldsOf(const QWidget* group) { return static_cast<QFormLayout*>(group->layout()); }

QWidget* sideBySide(std::initializer_list<QWidget*> widgets) {
  auto* around = new QWidget;
  QHBoxLayout* row = plainRow(around);
  for (QWidget* widget : widgets) row->addWidget(widget, widget == *widgets.begin() ? 1 : 0);
  return around;
}

QWidget* fromTheLeft(std::initializer_list<QWidget*> widgets) {
  auto* around = new QWidget;
  QHBoxLayout* row = plainRow(around);
  for (QWidget* widget : widgets) row->addWidget(widget);
  row->addStretch(1);
  return around;
}

QLineEdit* narrow(QLineEdit* field, int digits) {
  const int inset = 24;  // frame and padding
  field->setFixedWidth(field->fontMetrics().horizontalAdvance(QString(digits, '0')) + inset);
  return field;
}

void markFault(QWidget* box, bool fault) {
  if (!box || box->property("fault").toBool() == fault) return;
  box->setProperty("fault", fault);
  // A style sheet looks at properties when it is applied alone.
  box->style()->unpolish(box);
  box->style()->polish(box);
  box->update();
}

QWidget* scrolling(QWidget* page) { return new PageArea(page); }

}  // namespace quillmarden
