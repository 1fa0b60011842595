#pragma once

class QLabel;
class QPainter;
class QRect;

namespace quillmarden {

/// The program's own picture: a feather on a ground of ink blue. The splash, the login and the about screen wear it.
void paintCover(QPainter& painter, const QRect& place);
/// A text upon it, its size in points.
QLabel* coverLabel(const char* text, int points, bool strong);

}  // namespace quillmarden
