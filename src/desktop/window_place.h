#pragma once

#include <string_view>

#include "repository/session.h"

class QWidget;

namespace quillmarden {

/// Puts a window where the user left it. A place off every display, or larger than it, is brought back in.
void restorePlace(const Session& session, std::string_view screen, QWidget& window);
/// Keeps the place, and the size of a window that can be resized.
void savePlace(Session& session, std::string_view screen, const QWidget& window);

/// Moves a window so that all of it, frame included, lies on the display, or its left upper corner where it is too big.
void bringIn(QWidget& window);

}  // namespace quillmarden
