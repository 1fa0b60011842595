#include "driver.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QEventLoop>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QThread>
#include <iostream>

#include "desktop/binder.h"
#include "desktop/view.h"

namespace quillmarden {
namespace {

constexpr int kLookEvery = 25;  // milliseconds

void xdotool(const QStringList& arguments) {
  QProcess process;
  process.start(QStringLiteral("xdotool"), arguments);
  if (!process.waitForFinished(20'000) || process.exitCode() != 0)
    ADD_FAILURE() << "xdotool " << fromQt(arguments.join(' ')) << ": " << process.readAllStandardError().toStdString();
}

/// The menu in front that offers the caption, and its entry.
QPair<QMenu*, QAction*> entryOf(const QString& caption) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* menu = qobject_cast<QMenu*>(window);
    if (!menu || !menu->isVisible()) continue;
    for (QAction* action : menu->actions())
      if (action->isVisible() && action->isEnabled() && action->text().section('\t', 0, 0) == caption)
        return {menu, action};
  }
  return {};
}

}  // namespace

Driver::Driver(const std::string& repository) {
  const Places places{scripted_.host.machine.appDataFolder.string(), scripted_.host.machine.tempFolder.string(),
                      scripted_.host.machine.programFolder.string()};
  host_ = std::make_unique<QtHost>(turn_, places);
  host_->host.opener = scripted_.host.opener;
  turn_.tellFault = [](std::string_view fault) { ADD_FAILURE() << "a handler threw: " << fault; };
  app_ = std::make_unique<Application>(host_->host);
  front_ = std::make_unique<Front>(*app_, turn_, &host_->wait);
  app_->display.quit = [] {};  // the person's doings end the run
  if (repository.empty()) return;
  const auto copy = scripted_.host.machine.programFolder / "hanbai.mdb";
  std::filesystem::copy_file(repository, copy);
  front_->prefill(copy.string(), "admin");
}

Driver::~Driver() {
  front_.reset();
  app_.reset();
}

void Driver::run(const std::function<void()>& person) {
  QEventLoop loop;
  front_->start();
  std::thread thread([&] {
    person();
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
  });
  loop.exec();
  thread.join();
}

bool Driver::await(const char* what, const std::function<bool()>& seen, int milliseconds) {
  for (int waited = 0; waited < milliseconds; waited += kLookEvery) {
    if (look(seen)) return true;
    QThread::msleep(kLookEvery);
  }
  picture("missing");
  ADD_FAILURE() << "never seen: " << what;
  return false;
}

void Driver::awaitQuiet() {
  // Input in the middle of a long run is refused, as its panel shows; a person waits for that.
  await(
      "the end of a run", [this] { return !turn_.running() || QApplication::activeModalWidget(); }, 60'000);
}

void Driver::click(const QPoint& place, int button, int times) {
  awaitQuiet();
  // What lights up under the pointer does so before the press.
  QStringList arguments{"mousemove", QString::number(place.x()), QString::number(place.y()), "sleep", "0.03"};
  if (times > 0) arguments << "click";
  if (times > 1)
    arguments << "--repeat" << QString::number(times) << "--delay"
              << "60";
  if (times > 0) arguments << QString::number(button);
  xdotool(arguments);
  pause(60);
}

void Driver::key(const char* keys) {
  awaitQuiet();
  xdotool({"key", "--delay", "20", QString::fromLatin1(keys)});
  pause(40);
}

void Driver::type(const std::string& text) {
  awaitQuiet();
  xdotool({"type", "--delay", "12", toQt(text)});
  pause(40);
}

void Driver::pause(int milliseconds) { QThread::msleep(static_cast<unsigned long>(milliseconds)); }

QPoint Driver::at(std::string_view screen, const char* control) {
  QPoint place;
  const auto found = [&] {
    View* view = front_->find(screen);
    auto* widget = view ? view->findChild<QWidget*>(QString::fromUtf8(control)) : nullptr;
    if (!widget || !widget->isVisible()) return false;
    place = widget->mapToGlobal(widget->rect().center());
    return true;
  };
  await(control, found);
  return place;
}

QPoint Driver::at(std::string_view screen, const char* list, int row, int column) {
  QPoint place;
  const auto found = [&] {
    View* view = front_->find(screen);
    auto* widget = view ? view->findChild<QAbstractItemView*>(QString::fromUtf8(list)) : nullptr;
    if (!widget || !widget->isVisible()) return false;
    const QModelIndex index = widget->model()->index(row, column);
    if (!index.isValid()) return false;
    widget->scrollTo(index);
    const QRect cell = widget->visualRect(index).intersected(widget->viewport()->rect());
    place = widget->viewport()->mapToGlobal(cell.center());
    return cell.isValid();
  };
  await(list, found);
  return place;
}

void Driver::press(std::string_view screen, const char* control) { click(at(screen, control)); }

bool Driver::sees(std::string_view screen) {
  return look([&] {
    View* view = front_->find(screen);
    return view && view->isVisible();
  });
}

void Driver::awaitScreen(std::string_view screen) {
  const std::string name(screen);
  await(name.c_str(), [&] {
    View* view = front_->find(screen);
    return view && view->isVisible() && view->isActiveWindow();
  });
}

void Driver::awaitGone(std::string_view screen) {
  const std::string name = "the end of " + std::string(screen);
  await(name.c_str(), [&] {
    View* view = front_->find(screen);
    return !view || !view->isVisible();
  });
}

void Driver::choose(std::initializer_list<const char*> captions) {
  std::size_t step = 0;
  for (const char* caption : captions) {
    const QString text = QString::fromUtf8(caption);
    QPoint place;
    const auto found = [&] {
      const auto [menu, action] = entryOf(text);
      if (menu) place = menu->mapToGlobal(menu->actionGeometry(action).center());
      return menu != nullptr;
    };
    if (!await(caption, found)) return;
    // A menu follows the way of the pointer, and a submenu opens below it.
    click(place - QPoint(6, 0), 1, 0);
    click(place, 1, ++step == captions.size() ? 1 : 0);
  }
}

void Driver::pick(std::string_view screen, const char* box, const char* entry) {
  press(screen, box);
  QPoint place;
  const auto found = [&] {
    const QWidget* popup = QApplication::activePopupWidget();
    const auto* list = popup ? popup->findChild<QAbstractItemView*>() : nullptr;
    if (!list) return false;
    const QModelIndexList rows = list->model()->match(list->model()->index(0, 0), Qt::DisplayRole,
                                                      QString::fromUtf8(entry), 1, Qt::MatchExactly);
    if (rows.isEmpty()) return false;
    const QRect row = list->visualRect(rows.constFirst());
    place = list->viewport()->mapToGlobal(row.center());
    return list->viewport()->rect().contains(row.center());
  };
  if (!await(entry, found)) return;
  pause(350);  // a list takes no click right after the one that opened it
  click(place);
}

std::string Driver::stored(const char* sql) {
  return look([&] {
    const Recordset row = app_->session.gDB->openRecordset(sql);
    return row.eof() ? std::string("no row") : std::string(row.text(0));
  });
}

void Driver::answer(const char* text, const char* keys) {
  QString question;  // the next message may lie where this one lay
  const auto shown = [] {
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box && box->isActiveWindow() ? box->text() : QString();
  };
  const auto found = [&] {
    question = shown();
    return question.contains(QString::fromUtf8(text));
  };
  if (!await(text, found)) return;
  key(keys);
  await("the message's end", [&] { return shown() != question; });
}

void Driver::picture(const std::string& name) {
  look([&] {
    const std::string file = testing::TempDir() + "driven-" + name + ".png";
    if (QGuiApplication::primaryScreen()->grabWindow(0).save(toQt(file))) std::cerr << "picture: " << file << "\n";
  });
}

}  // namespace quillmarden
