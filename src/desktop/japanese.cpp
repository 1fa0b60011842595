#include "desktop/japanese.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace quillmarden {

void speakJapanese(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
  auto* translator = new QTranslator(&application);
  if (translator->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(translator);
}

}  // namespace quillmarden
