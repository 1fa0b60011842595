#include "desktop/look_menu.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <string>

#include "desktop/theme.h"
#include "desktop/view.h"
#include "shell/application.h"

namespace quillmarden {
namespace {

constexpr std::string_view kKey = "DesktopLook";

Look keptLook(const Application& app) {
  return app.session.ini ? lookOf(gGetAppSetting(*app.session.ini, kKey)) : Look::Follow;
}

}  // namespace

void applyKeptLook(const Application& app) { applyTheme(*qApp, keptLook(app)); }

QMenu* makeLookMenu(View& view) {
  Application& app = view.app();
  auto* menu = new QMenu(QStringLiteral("画面の色合い"), &view);
  auto* group = new QActionGroup(menu);
  const std::pair<const char*, Look> choices[] = {
      {"環境に合わせる", Look::Follow}, {"明るい", Look::Light}, {"暗い", Look::Dark}};
  for (const auto& [caption, look] : choices) {
    QAction* action = menu->addAction(QString::fromUtf8(caption));
    action->setCheckable(true);
    action->setChecked(keptLook(app) == look);
    group->addAction(action);
    QObject::connect(action, &QAction::triggered, &view, [&view, look = look] {
      view.later([&app = view.app(), look] {
        if (app.session.ini) putAppSetting(*app.session.ini, kKey, lookText(look));
        applyTheme(*qApp, look);
      });
    });
  }
  return menu;
}

}  // namespace quillmarden
