#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <cstdio>
#include <string>

#include "desktop/binder.h"
#include "desktop/front.h"
#include "desktop/japanese.h"
#include "desktop/look_menu.h"
#include "shell/application.h"

namespace {

using namespace quillmarden;

struct CommandLine {
  Places places;
  std::string repository;
  std::string user;
};

/// Options as the command-line program has them; a bare argument is a Repository too, as a file manager hands it over.
CommandLine readCommandLine(const QApplication& application) {
  QCommandLineParser parser;
  const auto add = [&](const char* name, const char* text) {
    parser.addOption({QString::fromLatin1(name), QString::fromUtf8(text), QStringLiteral("VALUE")});
  };
  parser.setApplicationDescription(QStringLiteral("データベース定義管理"));
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("使い方を表示する。"));
  parser.addOption(help);
  parser.addVersionOption();
  add("repository", "ログイン画面で選ばれている Repository のファイル");
  add("user", "ログイン画面のユーザー名");
  add("data-folder", "設定とログの親フォルダ");
  add("temp-folder", "作業用フォルダ");
  add("program-folder", "白紙のブックなどのあるフォルダ");
  parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("--repository と同じ"), QStringLiteral("[FILE]"));
  parser.process(application);
  if (parser.isSet(help)) parser.showHelp();

  CommandLine given;
  given.places = {fromQt(parser.value("data-folder")), fromQt(parser.value("temp-folder")),
                  fromQt(parser.value("program-folder"))};
  QString file = parser.value("repository");
  if (file.isEmpty() && !parser.positionalArguments().isEmpty()) file = parser.positionalArguments().constFirst();
  if (!file.isEmpty()) given.repository = fromQt(QFileInfo(file).absoluteFilePath());
  given.user = fromQt(parser.value("user"));
  return given;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("quillmarden"));
  QApplication::setApplicationDisplayName(QStringLiteral("Quillmarden"));
  QApplication::setApplicationVersion(QStringLiteral(QM_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("quillmarden"));
  // Windows are closed and hidden by the shell; it tells when the program is over.
  QApplication::setQuitOnLastWindowClosed(false);
  speakJapanese(application);
  const CommandLine given = readCommandLine(application);

  Turn turn;
  QtHost host(turn, given.places);
  Application app(host.host);
  Front front(app, turn, &host.wait);
  front.prefill(given.repository, given.user);
  front.start();
  return QApplication::exec();
}
