#include "desktop/theme.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QToolTip>
#include <QWidget>
#include <algorithm>
#include <utility>
#include <vector>

#include "desktop/flat_style.h"

namespace quillmarden {
namespace {

const Palette kLight = {.window = 0xf4f6f9,
                        .surface = 0xffffff,
                        .stripe = 0xf7f9fc,
                        .field = 0xffffff,
                        .text = 0x1f2a37,
                        .faint = 0x5d6978,
                        .line = 0xd3dae3,
                        .accent = 0x2b6c8f,
                        .accentText = 0xffffff,
                        .hover = 0xe6eef4,
                        .warning = 0xb7791f,
                        .fault = 0xc0392b,
                        .scrim = QColor(31, 42, 55, 70)};

const Palette kDark = {.window = 0x1e2329,
                       .surface = 0x262c34,
                       .stripe = 0x2a313a,
                       .field = 0x2b323b,
                       .text = 0xe3e8ee,
                       .faint = 0x98a4b3,
                       .line = 0x3d4753,
                       .accent = 0x4f9fc4,
                       .accentText = 0x10181f,
                       .hover = 0x323b46,
                       .warning = 0xe0b45c,
                       .fault = 0xf08a7d,
                       .scrim = QColor(0, 0, 0, 120)};

bool dark = false;

/// What the desktop around us prefers, as far as its palette tells.
bool desktopIsDark() {
  static const bool found = QApplication::palette().color(QPalette::Window).lightness() < 128;
  return found;
}

QPalette widgetPalette(const Palette& c) {
  QPalette p;
  p.setColor(QPalette::Window, c.window);
  p.setColor(QPalette::WindowText, c.text);
  p.setColor(QPalette::Base, c.field);
  p.setColor(QPalette::AlternateBase, c.stripe);
  p.setColor(QPalette::Text, c.text);
  p.setColor(QPalette::PlaceholderText, c.faint);
  p.setColor(QPalette::Button, c.surface);
  p.setColor(QPalette::ButtonText, c.text);
  p.setColor(QPalette::BrightText, c.fault);
  p.setColor(QPalette::Highlight, c.accent);
  p.setColor(QPalette::HighlightedText, c.accentText);
  p.setColor(QPalette::Link, c.accent);
  p.setColor(QPalette::ToolTipBase, c.surface);
  p.setColor(QPalette::ToolTipText, c.text);
  p.setColor(QPalette::Mid, c.line);
  p.setColor(QPalette::Dark, c.line);
  p.setColor(QPalette::Light, c.surface);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    p.setColor(QPalette::Disabled, role, c.faint);
  p.setColor(QPalette::Disabled, QPalette::Base, c.window);
  p.setColor(QPalette::Disabled, QPalette::Highlight, c.line);
  p.setColor(QPalette::Disabled, QPalette::HighlightedText, c.faint);
  return p;
}

constexpr const char* kStyleSheet = R"(
QWidget#card, QFrame#card { background: @surface; border: 1px solid @line; border-radius: 8px; }
QLabel[role="title"] { font-size: 15pt; font-weight: 600; }
QLabel[role="faint"] { color: @faint; }
QLabel[role="heading"] { color: @faint; font-size: 9pt; }
QLabel[role="mark"] { color: @warning; border: 1px solid @warning; border-radius: 4px; padding: 0 6px; font-size: 9pt; }
QPushButton { background: @surface; border: 1px solid @line; border-radius: 5px; padding: 4px 14px; min-height: 18px; }
QPushButton:hover { background: @hover; }
QPushButton:pressed { background: @line; }
QPushButton:focus { border-color: @accent; }
QPushButton:disabled { color: @faint; background: @window; }
QPushButton:default { background: @accent; color: @accentText; border-color: @accent; }
QPushButton:default:hover { border-color: @text; }
QPushButton:default:disabled { background: @line; color: @faint; border-color: @line; }
QToolButton { background: transparent; border: 1px solid transparent; border-radius: 5px; padding: 4px; }
QToolButton:hover { background: @hover; border-color: @line; }
QToolButton:pressed, QToolButton:checked { background: @line; }
QToolButton:focus { border-color: @accent; }
QToolButton[popupMode="2"] { padding-right: 14px; }
QToolButton::menu-indicator { width: 9px; subcontrol-position: right center; right: 3px; }
QLineEdit, QPlainTextEdit, QTextEdit { background: @field; border: 1px solid @line; border-radius: 5px; padding: 3px 6px;
  selection-background-color: @accent; selection-color: @accentText; }
QPlainTextEdit, QTextEdit { padding: 1px 4px; }
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus, QAbstractItemView:focus { border-color: @accent; }
QLineEdit[fault="true"], QPlainTextEdit[fault="true"] { border-color: @fault; }
QLineEdit:disabled, QLineEdit:read-only { background: @window; }
QAbstractItemView { background: @field; alternate-background-color: @stripe; border: 1px solid @line;
  border-radius: 5px; outline: 0; }
QAbstractItemView:disabled { background: @window; color: @faint; }
QListView::item { padding: 3px 5px; }
QListView::item:selected, QTableView[role="rows"]::item:selected { background: @accent; color: @accentText; }
QListView::item:selected:disabled { background: @line; color: @faint; }
QTableView[role="rows"]::item { padding: 0 6px; border: 0; }
QComboBox QLineEdit { border: 0; padding: 0; background: transparent; }
QTableView { gridline-color: @line; }
QHeaderView::section { background: @window; color: @faint; border: 0; border-bottom: 1px solid @line;
  border-right: 1px solid @line; padding: 4px 6px; }
QHeaderView { background: @window; border: 0; }
QTableCornerButton::section { background: @window; border: 0; }
QMenuBar { background: @window; border-bottom: 1px solid @line; }
QMenuBar::item { padding: 5px 10px; border-radius: 4px; background: transparent; }
QMenuBar::item:selected { background: @hover; }
QMenu { background: @surface; border: 1px solid @line; padding: 4px; }
QMenu::item { padding: 5px 28px 5px 24px; border-radius: 4px; }
QMenu::item:selected { background: @accent; color: @accentText; }
QMenu::item:disabled { color: @faint; background: transparent; }
QMenu::separator { height: 1px; background: @line; margin: 4px 8px; }
QStatusBar { border-top: 1px solid @line; color: @faint; }
QStatusBar::item { border: 0; }
QSplitter::handle { background: @window; }
QSplitter::handle:hover { background: @hover; }
QToolTip { background: @surface; color: @text; border: 1px solid @line; padding: 3px; }
QProgressBar { background: @window; border: 1px solid @line; border-radius: 5px; text-align: center; min-height: 14px; }
QProgressBar::chunk { background: @accent; border-radius: 4px; }
QGroupBox { border: 1px solid @line; border-radius: 6px; margin-top: 10px; padding-top: 6px; }
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; color: @faint; }
QTabBar::tab { background: transparent; border: 0; border-bottom: 2px solid transparent; padding: 6px 14px; color: @faint; }
QTabBar::tab:hover { color: @text; }
QTabBar::tab:selected { color: @text; border-bottom-color: @accent; }
QTabBar::tab:focus { background: @hover; }
QScrollBar:vertical { background: transparent; border: 0; width: 12px; margin: 0; }
QScrollBar:horizontal { background: transparent; border: 0; height: 12px; margin: 0; }
QScrollBar::handle { background: @line; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover, QScrollBar::handle:pressed { background: @faint; }
QAbstractScrollArea::corner { background: transparent; border: 0; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QTabWidget::pane { border: 1px solid @line; border-radius: 6px; top: -1px; }
)";

QString styleSheet(const Palette& c) {
  QString sheet = QString::fromUtf8(kStyleSheet);
  const std::pair<const char*, const QColor*> names[] = {
      {"@accentText", &c.accentText}, {"@accent", &c.accent}, {"@warning", &c.warning}, {"@fault", &c.fault},
      {"@surface", &c.surface},       {"@window", &c.window}, {"@stripe", &c.stripe},   {"@field", &c.field},
      {"@faint", &c.faint},           {"@hover", &c.hover},   {"@text", &c.text},       {"@line", &c.line}};
  for (const auto& [name, colour] : names) sheet.replace(QLatin1String(name), colour->name());
  return sheet;
}

QFont widgetFont() {
  QFont font(japaneseFont());
  font.setPointSizeF(10);
  font.setStyleHint(QFont::SansSerif);
  font.setHintingPreference(QFont::PreferVerticalHinting);
  return font;
}

/// Letter sizes, in points, that views have chosen for their own widgets.
std::vector<std::pair<QWidget*, double>> chosenSizes() {
  std::vector<std::pair<QWidget*, double>> sizes;
  for (QWidget* widget : QApplication::allWidgets())
    if (widget->testAttribute(Qt::WA_SetFont) && widget->font().pointSizeF() > 0)
      sizes.emplace_back(widget, widget->font().pointSizeF());
  return sizes;
}

void choose(const std::vector<std::pair<QWidget*, double>>& sizes) {
  for (const auto& [widget, points] : sizes) {
    QFont own = widget->font();
    if (own.pointSizeF() == points) continue;
    own.setPointSizeF(points);
    widget->setFont(own);
  }
}

}  // namespace

Look lookOf(std::string_view text) {
  if (text == "light") return Look::Light;
  if (text == "dark") return Look::Dark;
  return Look::Follow;
}

std::string_view lookText(Look look) {
  switch (look) {
    case Look::Light:
      return "light";
    case Look::Dark:
      return "dark";
    case Look::Follow:
      return "";
  }
  return "";
}

void applyTheme(QApplication& application, Look look) {
  const bool desktop = desktopIsDark();  // asked before our own palette hides it
  dark = look == Look::Dark || (look == Look::Follow && desktop);
  static bool styled = false;
  if (!std::exchange(styled, true)) QApplication::setStyle(new FlatStyle);
  // A new style sheet takes widgets that are already seen back to the letters they were first shown with.
  const auto sizes = chosenSizes();
  QApplication::setFont(widgetFont());
  QApplication::setPalette(widgetPalette(palette()));
  application.setStyleSheet(styleSheet(palette()));
  choose(sizes);
}

const Palette& palette() { return dark ? kDark : kLight; }

bool isDark() { return dark; }

QColor toColour(Colour colour) {
  return QColor(static_cast<int>(colour & 0xff), static_cast<int>((colour >> 8) & 0xff),
                static_cast<int>((colour >> 16) & 0xff));
}

QColor toBackground(Colour colour) {
  const QColor plain = toColour(colour);
  if (!dark) return plain;
  const int saturation = plain.hsvSaturation() == 0 ? 0 : std::clamp(plain.hsvSaturation(), 70, 150);
  return QColor::fromHsv(std::max(0, plain.hsvHue()), saturation, 95);
}

QColor toText(Colour colour) {
  const QColor plain = toColour(colour);
  if (!dark || plain.lightness() >= 140) return plain;
  return plain.hslSaturation() < 40 ? palette().text
                                    : QColor::fromHsl(std::max(0, plain.hslHue()), plain.hslSaturation(), 205);
}

QString japaneseFont() {
  static const QString found = [] {
    const QStringList installed = QFontDatabase::families();
    for (const char* name : {"Noto Sans CJK JP", "Noto Sans JP", "BIZ UDPGothic", "Yu Gothic UI", "Meiryo UI",
                             "IPAexGothic", "IPAPGothic", "VL PGothic", "TakaoPGothic"})
      if (const QString family = QString::fromLatin1(name); installed.contains(family)) return family;
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
  }();
  return found;
}

}  // namespace quillmarden
