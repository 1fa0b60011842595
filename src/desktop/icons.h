#pragma once

#include <QIcon>

namespace quillmarden {

/// The pictures on buttons, drawn from lines so that they are sharp at every scale.
enum class Glyph {
  Quill,  ///< the program's own
  Add,
  Clear,
  Close,
  Folder,
  Gear,
  Help,
  Hide,
  Information,
  List,
  LogOff,
  Menu,
  Pane,
  Question,
  Replica,
  Search,
  Sql,
  Stop,
  Warning
};

/// The glyph as an icon that is drawn in the colours of the present look whenever it is shown.
QIcon icon(Glyph glyph);
/// The program's icon for windows and the notification area.
QIcon programIcon();

}  // namespace quillmarden
