#pragma once

#include <QColor>
#include <QString>
#include <string_view>

#include "screen/controls.h"

class QApplication;

namespace quillmarden {

/// How the windows look: as the desktop around them, or always one of the two.
enum class Look { Follow, Light, Dark };

/// "light", "dark", and Follow for everything else; the text in which the settings keep it.
Look lookOf(std::string_view text);
std::string_view lookText(Look look);

/// The colours of a look, named by what they are for.
struct Palette {
  QColor window, surface, stripe, field, text, faint, line, accent, accentText, hover, warning, fault, scrim;
};

/// Gives the program its style, colours and Japanese font. May be called again when a setting has changed.
void applyTheme(QApplication& application, Look look);
/// The colours that stand now.
const Palette& palette();
bool isDark();

/// A colour of a record, 0xBBGGRR.
QColor toColour(Colour colour);
/// A record's background colour as it is to stand behind text in the present look: a dark look takes the hue, darkened,
/// so that light text stays readable.
QColor toBackground(Colour colour);
/// A record's text colour; a dark look lightens what would drown in it.
QColor toText(Colour colour);

/// The first installed font of those that hold Japanese well; the system's own choice when none of them is there.
QString japaneseFont();

}  // namespace quillmarden
