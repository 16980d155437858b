// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/theme.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QProxyStyle>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSvgRenderer>

// A static library's resources are linked in only where they are asked for, outside any namespace.
static void InitToolkitResources() { Q_INIT_RESOURCE(toolkit); }

namespace quayline {

namespace {

constexpr QRgb kAccentOnLight = 0xff0e5a6b;
constexpr QRgb kAccentOnDark = 0xff1c7f92;
constexpr QRgb kLinkOnDark = 0xff5cc3d4;

constexpr int kControlHeight = 28;
constexpr int kRowHeight = 24;

QByteArray ReadIcon(const QString& name) {
  InitToolkitResources();
  QFile file(QStringLiteral(":/quayline/icons/%1.svg").arg(name));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Draws an SVG, with the palette's colour in place of black. The colour is looked up at each
// painting, so that an icon made once follows the palette.
class PaletteIconEngine final : public QIconEngine {
 public:
  PaletteIconEngine(QByteArray svg, QPalette::ColorRole role) : svg_(std::move(svg)), role_(role) {}

  QIconEngine* clone() const override { return new PaletteIconEngine(svg_, role_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QColor color = palette.color(group, role_);
    QByteArray svg = svg_;
    svg.replace("#000000", color.name().toLatin1());
    QSvgRenderer renderer(svg);
    painter->setRenderHint(QPainter::Antialiasing);
    renderer.render(painter, QRectF(rect));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

 private:
  QByteArray svg_;
  QPalette::ColorRole role_;
};

// The system's style with a little more room: fields and buttons of one height, rows that are easy
// to hit.
class RoomyStyle final : public QProxyStyle {
 public:
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override {
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
      case CT_PushButton:
      case CT_ComboBox:
      case CT_LineEdit:
        result.setHeight(std::max(result.height(), kControlHeight));
        break;
      case CT_ToolButton:
        result = result.expandedTo(QSize(kControlHeight, kControlHeight));
        break;
      case CT_ItemViewItem:
        result.setHeight(std::max(result.height(), kRowHeight));
        break;
      default:
        break;
    }
    return result;
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

}  // namespace

Theme::Theme(QApplication& application) : application_(application) {
  QApplication::setStyle(new RoomyStyle);     // which owns it, as the analyzer does not know:
  application_.setWindowIcon(ProgramLogo());  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  Apply();
  application_.installEventFilter(this);
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &application_ && event->type() == QEvent::ApplicationPaletteChange && !applying_) {
    Apply();
  }
  return false;
}

void Theme::Apply() {
  const QScopedValueRollback guard(applying_, true);
  const bool dark = IsDark(application_.palette());
  QPalette accent;  // only the roles that are set here replace the system's
  accent.setResolveMask(0);
  accent.setColor(QPalette::Highlight, QColor::fromRgb(dark ? kAccentOnDark : kAccentOnLight));
  accent.setColor(QPalette::HighlightedText, Qt::white);
  accent.setColor(QPalette::Link, QColor::fromRgb(dark ? kLinkOnDark : kAccentOnLight));
  accent.setColor(QPalette::LinkVisited, QColor::fromRgb(dark ? kLinkOnDark : kAccentOnLight));
  QPalette palette = accent.resolve(application_.palette());
  palette.setResolveMask(accent.resolveMask() | application_.palette().resolveMask());
  application_.setPalette(palette);
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

QColor Mixed(const QColor& under, const QColor& over, qreal share) {
  const auto mix = [share](int from, int to) { return qRound(from + (to - from) * share); };
  return QColor(mix(under.red(), over.red()), mix(under.green(), over.green()),
                mix(under.blue(), over.blue()));
}

QIcon ThemeIcon(const QString& name, QPalette::ColorRole role) {
  return QIcon(new PaletteIconEngine(ReadIcon(name), role));
}

void ResizeOnScreen(QWidget& window, const QSize& wanted) {
  window.resize(wanted.boundedTo(window.screen()->availableSize()));
}

QIcon ProgramLogo() { return ThemeIcon(QStringLiteral("logo"), QPalette::ButtonText); }

}  // namespace quayline
