#include "desktop/choice.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/binder.h"

namespace quillmarden {

namespace {

constexpr int kDetailsWidth = 520;
constexpr int kDetailsHeight = 200;

}  // namespace

int showChoice(std::string_view text, std::string_view details, const std::vector<std::string>& ways,
               std::string_view title) {
  QDialog dialog(QApplication::activeWindow());
  dialog.setWindowTitle(toQt(title));
  dialog.setWindowIcon(QApplication::windowIcon());
  auto* layout = new QVBoxLayout(&dialog);
  auto* words = new QLabel(toQt(text));
  words->setTextFormat(Qt::PlainText);  // names out of a Repository are no mark-up
  layout->addWidget(words);
  if (!details.empty()) {
    auto* lines = new QPlainTextEdit(toQt(details));
    lines->setReadOnly(true);
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines->setMinimumSize(kDetailsWidth, kDetailsHeight);
    layout->addWidget(lines);
  }
  auto* buttons = new QDialogButtonBox;
  int chosen = -1;
  for (std::size_t way = 0; way < ways.size(); ++way) {
    QPushButton* button = buttons->addButton(toQt(ways[way]), QDialogButtonBox::ActionRole);
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, &chosen, way] {
      chosen = static_cast<int>(way);
      dialog.accept();
    });
  }
  QPushButton* none = buttons->addButton(QStringLiteral("キャンセル"), QDialogButtonBox::RejectRole);
  QObject::connect(none, &QPushButton::clicked, &dialog, &QDialog::reject);
  // Whatever a hasty Enter presses loses nothing.
  none->setDefault(true);
  none->setFocus();
  layout->addWidget(buttons);
  dialog.exec();
  return chosen;
}

}  // namespace quillmarden
