#pragma once

#include "desktop/view.h"

class QListView;

namespace quillmarden {

/// The login: folder, Repository, user.
class FrmLogInNewView : public View {
 public:
  FrmLogInNewView(Front& front, std::string screen);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeForm();
  QWidget* makeFolders();
  QWidget* makeFiles();
  QWidget* makeUser();
  QWidget* makeProgress();
  QWidget* makeButtons();

  QListView* folders_ = nullptr;
};

}  // namespace quillmarden
