#include "desktop/qt_host.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QLayout>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QSysInfo>
#include <QUrl>

#include "common/paths.h"
#include "desktop/binder.h"
#include "desktop/choice.h"
#include "desktop/icons.h"
#include "desktop/view.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

fs::path placeOf(const std::string& given, const QString& usual) {
  std::error_code ignored;
  if (given.empty()) return fromQt(usual);
  return fs::absolute(given, ignored).lexically_normal();
}

QString fileName(const fs::path& path) { return toQt(path.string()); }

bool openUrl(const fs::path& path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(fileName(path))); }

DateTime localNow() {
  const QDateTime now = QDateTime::currentDateTime();
  const QDate date = now.date();
  const QTime time = now.time();
  return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

Machine machineOf(const Places& places) {
  Machine machine;
  machine.computerName = fromQt(QSysInfo::machineHostName());
  machine.appDataFolder =
      placeOf(places.dataFolder, QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
  machine.tempFolder = placeOf(places.tempFolder, QDir::tempPath());
  machine.programFolder = placeOf(places.programFolder, toQt(assetsFolder(QM_ASSETS).string()));
  machine.setClipboard = [](std::string_view text) { QGuiApplication::clipboard()->setText(toQt(text)); };
  machine.clipboard = [] { return fromQt(QGuiApplication::clipboard()->text()); };
  return machine;
}

Glyph glyphOf(int style) {
  switch (style & 0xf0) {
    case kStopIcon:
      return Glyph::Stop;
    case kQuestionIcon:
      return Glyph::Question;
    case kWarningIcon:
      return Glyph::Warning;
    default:
      return Glyph::Information;
  }
}

}  // namespace

int showMessage(std::string_view text, int style, std::string_view title) {
  QWidget* window = QApplication::activeWindow();
  QMessageBox box(window ? window : View::inFront());
  box.setWindowTitle(toQt(title));
  box.setWindowIcon(QApplication::windowIcon());
  box.setTextFormat(Qt::PlainText);  // names out of a Repository are no mark-up
  box.setText(toQt(text));
  box.setIconPixmap(icon(glyphOf(style)).pixmap(QSize(36, 36), box.devicePixelRatio()));

  const int kind = style & 7;
  const bool asks = kind == kYesNo;
  QPushButton* first = box.addButton(asks ? QStringLiteral("はい(&Y)") : QStringLiteral("OK"), QMessageBox::AcceptRole);
  QPushButton* second = nullptr;
  if (kind != kOkOnly)
    second = box.addButton(asks ? QStringLiteral("いいえ(&N)") : QStringLiteral("キャンセル"), QMessageBox::RejectRole);
  const int accept = asks ? kYes : kOk;
  box.setDefaultButton(presetAnswer(style) == accept ? first : second);
  box.setEscapeButton(closingAnswer(style) == accept ? first : second);
  box.layout()->setContentsMargins(20, 18, 20, 16);
  box.exec();
  if (box.clickedButton() == first) return accept;
  return asks ? kNo : kCancel;
}

QtHost::QtHost(Turn& turn, const Places& places) : wait(turn) {
  turn.begun = [this] { wait.begin(); };
  turn.ended = [this] { wait.end(); };
  turn.tellFault = [](std::string_view fault) { showMessage(fault, kOkOnly | kStopIcon, "こまった"); };

  host.dialogs.message = [&turn](std::string_view text, int style, std::string_view title) {
    turn.refresh();  // what the message speaks of is to be seen behind it
    return showMessage(text, style, title);
  };
  host.dialogs.choose = [&turn](std::string_view text, std::string_view details, const std::vector<std::string>& ways,
                                std::string_view title) {
    turn.refresh();
    return showChoice(text, details, ways, title);
  };
  host.dialogs.waitText = [this](std::string_view text) { wait.setText(text); };
  host.dialogs.progress = [this](long done, long total) { wait.setProgress(done, total); };
  host.dialogs.stopRequested = [this] { return wait.stopRequested(); };
  host.dialogs.yield = [this] { wait.yield(); };
  host.dialogs.browseFolder = [](std::string_view prompt) {
    return fromQt(QFileDialog::getExistingDirectory(QApplication::activeWindow(), toQt(prompt)));
  };
  host.dialogs.newFile = [](std::string_view prompt, const fs::path& suggested) {
    // What is to become of a file that is there, the routine that asked decides.
    return fromQt(QFileDialog::getSaveFileName(View::inFront(), toQt(prompt), fileName(suggested), {}, nullptr,
                                               QFileDialog::DontConfirmOverwrite));
  };
  host.clock.now = localNow;
  host.machine = machineOf(places);
  host.opener.openFile = openUrl;
  host.opener.openFolder = openUrl;
  host.opener.startWithArguments = [](const fs::path& program, std::string_view arguments) {
    return QProcess::startDetached(fileName(program), QProcess::splitCommand(toQt(arguments)),
                                   fileName(program.parent_path()));
  };
  host.opener.startProgram = [](const fs::path& program) {
    return QProcess::startDetached(fileName(program), {}, fileName(program.parent_path()));
  };
}

}  // namespace quillmarden
