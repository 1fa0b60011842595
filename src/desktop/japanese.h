#pragma once

class QApplication;

namespace quillmarden {

/// Gives Qt's own texts, such as those of the folder dialog and of the menus in text fields, their Japanese form where
/// the system has it.
void speakJapanese(QApplication& application);

}  // namespace quillmarden
