#include <gtest/gtest.h>

#include <QApplication>
#include <QFileInfo>

#include "desktop/japanese.h"
#include "desktop/theme.h"

// Fontconfig keeps what it has read until the process ends, behind pointers that the leak checker can't follow.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

int main(int argc, char** argv) {
  // Without a display unless the caller names one.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
  QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
  quillmarden::speakJapanese(application);
  quillmarden::applyTheme(application, quillmarden::Look::Light);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
