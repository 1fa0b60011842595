#include "desktop/frm_splash_view.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "desktop/cover.h"

namespace quillmarden {

FrmSplashView::FrmSplashView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  setFixedSize(460, 260);
  move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(28, 24, 28, 22);
  layout->addStretch();
  layout->addWidget(coverLabel("Quillmarden", 24, true));
  layout->addWidget(coverLabel("データベース定義管理", 11, false));
  layout->addSpacing(10);
  layout->addWidget(binder().bind("lblVersion", coverLabel("", 10, false), app().splash.lblVersion));
  layout->addWidget(binder().bind("lblPlatform", coverLabel("", 10, false), app().splash.lblPlatform));
}

void FrmSplashView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintCover(painter, rect());
}

}  // namespace quillmarden
