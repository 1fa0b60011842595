#pragma once

class QWidget;

namespace quillmarden {

class View;
struct frmTBDetail;

/// The names of the table on a detail screen and the marks beside them.
QWidget* makeDetailTitle(View& view, frmTBDetail& record);
/// What the header of the table says: origin, figures, storage, files. It does not change anything but through its two
/// buttons.
QWidget* makeDetailFacts(View& view, frmTBDetail& record);

}  // namespace quillmarden
