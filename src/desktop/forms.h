#pragma once

#include <QWidget>

class QFormLayout;
class QGroupBox;
class QLineEdit;

namespace quillmarden {

/// A form of captions and fields that fills its widget, or waits to be put into another layout.
QFormLayout* fieldForm(QWidget* around = nullptr);
/// A framed group whose fields stand in a form, fieldsOf.
QGroupBox* fieldGroup(const char* title);
QFormLayout* fieldsOf(const QWidget* group);
/// Widgets beside each other; the first takes the room that is left.
QWidget* sideBySide(std::initializer_list<QWidget*> widgets);
/// The same with each of its own width, at the left.
QWidget* fromTheLeft(std::initializer_list<QWidget*> widgets);
/// Makes a field as wide as some digits.
QLineEdit* narrow(QLineEdit* field, int digits);

/// Frames a box in the colour of faults, or takes that away.
void markFault(QWidget* box, bool fault);

/// A page that scrolls where the window is smaller than it, and never hides the field that has the focus.
QWidget* scrolling(QWidget* page);

}  // namespace quillmarden
