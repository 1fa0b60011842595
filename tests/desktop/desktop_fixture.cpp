#include "desktop_fixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QInputMethodEvent>
#include <filesystem>
#include <stdexcept>

#include "desktop/binder.h"

namespace quillmarden {

DesktopTest::DesktopTest() : appOwned(std::make_unique<Application>(scripted.host)), app(*appOwned) {
  std::filesystem::copy_file(QM_SAMPLE_FILE, scripted.host.machine.programFolder / "hanbai.mdb");
  turn.tellFault = [](std::string_view fault) { ADD_FAILURE() << "a handler threw: " << fault; };
  front = std::make_unique<Front>(app, turn);
}

DesktopTest::~DesktopTest() {
  front.reset();
  appOwned.reset();
}

void DesktopTest::startToLogIn() {
  front->start();
  ASSERT_TRUE(QTest::qWaitFor([this] { return front->find("frmLogInNew") && !front->find("frmSplash"); }, 5000));
}

void DesktopTest::logInTo(std::string_view system) {
  startToLogIn();
  app.logIn.txtUserName.text = "yamada";
  turn.refresh();
  press("frmLogInNew", "cmdOK");
  ASSERT_TRUE(QTest::qWaitFor([this] { return front->find("frmTBList") != nullptr; }, 5000));
  settle();
  if (!system.empty()) pick("frmTBList", "CmbSystem", std::string(system).c_str());
}

View& DesktopTest::view(std::string_view screen) {
  View* found = front->find(screen);
  if (!found) throw std::runtime_error("no window of " + std::string(screen));
  return *found;
}

void DesktopTest::activate(std::string_view screen) {
  View& window = view(screen);
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 5000)) << screen;
}

void DesktopTest::pick(std::string_view screen, const char* name, const char* text) {
  auto& box = control<QComboBox>(screen, name);
  const int place = box.findText(QString::fromUtf8(text));
  ASSERT_GE(place, 0) << name << " does not offer " << text;
  box.setCurrentIndex(place);
  Q_EMIT box.activated(place);
  settle();
}

void DesktopTest::press(std::string_view screen, const char* name) {
  QTest::mouseClick(&control<QAbstractButton>(screen, name), Qt::LeftButton);
  settle();
}

void DesktopTest::chooseRow(std::string_view screen, const char* name, int row, Qt::KeyboardModifiers keys) {
  auto& list = control<QAbstractItemView>(screen, name);
  const QModelIndex index = list.model()->index(row, 0);
  list.scrollTo(index);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, list.visualRect(index).center());
  settle();
}

void DesktopTest::type(QWidget& widget, const char* text) {
  QInputMethodEvent event;
  event.setCommitString(QString::fromUtf8(text));
  QCoreApplication::sendEvent(&widget, &event);
}

void DesktopTest::settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace quillmarden
