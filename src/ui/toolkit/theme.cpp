// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/theme.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QGroupBox>
#include <QIconEngine>
#include <QPainter>
#include <QProxyStyle>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStyleOption>
#include <QStyledItemDelegate>
#include <QSvgRenderer>

#include <algorithm>

#include "ui/toolkit/readable_text.h"

// A static library's resources are linked in only where they are asked for, outside any namespace.
static void InitToolkitResources() { Q_INIT_RESOURCE(toolkit); }

namespace quayline {

namespace {

constexpr QRgb kAccentOnLight = 0xff0e5a6b;
constexpr QRgb kAccentOnDark = 0xff1c7f92;
constexpr QRgb kLinkOnDark = 0xff5cc3d4;

// What a window manager puts around a window: its size is known only when the window is shown.
constexpr QSize kWindowFrame(16, 48);
constexpr int kControlHeight = 28;
constexpr int kRowHeight = 24;
constexpr int kCornerRadius = 6;
constexpr int kRowPadding = 6;  // of rows with several lines
constexpr int kCellMargin = 5;

bool HasProblem(const QWidget* field) {
  return field != nullptr && field->property(kHasProblem).toBool();
}

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
    const QColor color =
        palette.color(group, mode == QIcon::Selected ? QPalette::HighlightedText : role_);
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
// to hit. A field that only shows its text has no frame, one with a problem has a red frame. What
// controls, cells and the lists of boxes show is drawn as a ReadableText().
class RoomyStyle final : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element == PE_FrameGroupBox) {
      PaintCard(*painter, option->rect.adjusted(0, RoomForTitle(*option, widget), 0, 0),
                option->palette);
      return;
    }
    const bool is_field = element == PE_PanelLineEdit;
    if (is_field && option->state.testFlag(State_ReadOnly)) {
      return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (is_field && HasProblem(widget)) {
      PaintErrorFrame(*painter, *option);
    }
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox && HasProblem(widget)) {
      PaintErrorFrame(*painter, *option);
    }
  }

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    if (const auto* cell = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
      QStyleOptionViewItem readable = *cell;
      readable.text = ReadableText(cell->text);
      QProxyStyle::drawControl(element, &readable, painter, widget);
    } else if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
               item != nullptr && !item->text.contains(u'\t')) {  // which begins its shortcut
      QStyleOptionMenuItem readable = *item;
      readable.text = ReadableText(item->text);
      QProxyStyle::drawControl(element, &readable, painter, widget);
    } else {
      QProxyStyle::drawControl(element, option, painter, widget);
    }
  }

  void drawItemText(QPainter* painter, const QRect& place, int flags, const QPalette& palette,
                    bool is_enabled, const QString& text, QPalette::ColorRole role) const override {
    QProxyStyle::drawItemText(painter, place, flags, palette, is_enabled, ReadableText(text), role);
  }

  // The list of a box with a field is drawn by cells of its own, which ask no style.
  void polish(QWidget* widget) override {
    QProxyStyle::polish(widget);
    auto* box = qobject_cast<QComboBox*>(widget);
    if (box != nullptr && qobject_cast<QStyledItemDelegate*>(box->itemDelegate()) == nullptr &&
        box->isEditable()) {
      box->setItemDelegate(new QStyledItemDelegate(box));
    }
  }
  using QProxyStyle::polish;

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
        result.setHeight(std::max(result.height() + kRowPadding, kRowHeight));
        break;
      default:
        break;
    }
    return result;
  }

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    switch (metric) {
      case PM_FocusFrameHMargin:  // beside the text of a cell
      case PM_HeaderMargin:
        return kCellMargin;
      default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, data);
  }

 private:
  // The title of a group is above its frame.
  int RoomForTitle(const QStyleOption& option, const QWidget* widget) const {
    constexpr int kGap = 3;
    const auto* group = qobject_cast<const QGroupBox*>(widget);
    return group == nullptr || group->title().isEmpty()
               ? 0
               : std::max(pixelMetric(PM_IndicatorHeight, &option, widget),
                          option.fontMetrics.height()) +
                     kGap;
  }

  static void PaintErrorFrame(QPainter& painter, const QStyleOption& option) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ErrorColor(option.palette), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
    painter.restore();
  }
};

}  // namespace

void PaintCard(QPainter& painter, const QRect& place, const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Mixed(window, text, 0.18));
  painter.setBrush(IsDark(palette) ? Mixed(window, text, 0.05) : Mixed(window, Qt::white, 0.6));
  painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius,
                          kCornerRadius);
  painter.restore();
}

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

QColor ErrorColor(const QPalette& palette) {
  return IsDark(palette) ? QColor(0xff, 0x7b, 0x72) : QColor(0xc6, 0x28, 0x28);
}

QColor WarningColor(const QPalette& palette) {
  return IsDark(palette) ? QColor(0xff, 0xb7, 0x4d) : QColor(0xb2, 0x6a, 0x00);
}

QIcon ThemeIcon(const QString& name, QPalette::ColorRole role) {
  return QIcon(new PaletteIconEngine(ReadIcon(name), role));
}

void ResizeOnScreen(QWidget& window, const QSize& wanted) {
  window.resize(wanted.boundedTo(window.screen()->availableSize() - kWindowFrame));
}

void OpenOver(QWidget& window, const QSize& wanted) {
  const QWidget* opener =
      window.parentWidget() != nullptr ? window.parentWidget() : QApplication::activeWindow();
  if (opener == nullptr) {
    ResizeOnScreen(window, wanted);
    return;
  }
  opener = opener->window();
  window.setScreen(opener->screen());
  ResizeOnScreen(window, wanted);
  QRect place(QPoint(0, 0), window.size() + kWindowFrame);
  place.moveCenter(opener->frameGeometry().center());
  const QRect free = opener->screen()->availableGeometry();
  place.moveLeft(std::max(free.left(), std::min(place.left(), free.right() + 1 - place.width())));
  place.moveTop(std::max(free.top(), std::min(place.top(), free.bottom() + 1 - place.height())));
  window.move(place.topLeft());
}

QIcon ProgramLogo() { return ThemeIcon(QStringLiteral("logo"), QPalette::ButtonText); }

}  // namespace quayline
