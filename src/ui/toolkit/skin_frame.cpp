// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/skin_frame.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/compositor.h"
#include "ui/toolkit/enter_key.h"
#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

constexpr int kShadow = 12;     // how far it reaches
constexpr int kShadowDrop = 2;  // light comes from above
constexpr int kCornerRadius = 9;
constexpr int kBorder = 4;       // of the surface, to grab where there is no shadow
constexpr int kCornerZone = 16;  // where two edges are grabbed at once

// Fades out by rectangles that lie in each other, each a little darker.
void PaintShadow(QPainter& painter, const QRectF& surface) {
  constexpr int kDarkest = 70;  // of 255
  painter.save();
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.setPen(Qt::NoPen);
  for (int distance = kShadow - kShadowDrop; distance >= 0; --distance) {
    const qreal nearness = 1.0 - qreal(distance) / (kShadow - kShadowDrop + 1);
    painter.setBrush(QColor(0, 0, 0, qRound(kDarkest * nearness * nearness)));
    const qreal radius = kCornerRadius + distance;
    painter.drawRoundedRect(
        surface.translated(0, kShadowDrop).adjusted(-distance, -distance, distance, distance),
        radius, radius);
  }
  painter.restore();
}

Qt::CursorShape CursorOf(Qt::Edges edges) {
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  if (edges == Qt::Edges()) {
    return Qt::ArrowCursor;
  }
  return (edges & (Qt::LeftEdge | Qt::RightEdge)) != 0 ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

// The window manager takes from these which of its own commands the window has.
Qt::WindowFlags FlagsFor(TitleButtons buttons) {
  const Qt::WindowFlags flags =
      Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  return buttons == TitleButtons::kMinimiseAndClose ? flags | Qt::WindowMinMaxButtonsHint : flags;
}

}  // namespace

SkinFrame::SkinFrame(TitleButtons buttons, QWidget* parent)
    : QWidget(parent, FlagsFor(buttons)), buttons_(buttons) {
  setAttribute(Qt::WA_TranslucentBackground);
  setMouseTracking(true);
  MakeRoomForShadow();
}

void SkinFrame::SetContent(QWidget* content) {
  bar_ = new TitleBar(buttons_, this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kBorder, 0, kBorder, kBorder);
  layout->setSpacing(0);
  layout->addWidget(bar_);
  layout->addWidget(content, 1);
  // The cursors of the edges are those of the frame alone.
  bar_->setCursor(Qt::ArrowCursor);
  content->setCursor(Qt::ArrowCursor);
}

void SkinFrame::MoveSurface(const QPoint& corner) {
  move(corner - QPoint(contentsMargins().left(), contentsMargins().top()));
}

void SkinFrame::ResizeSurface(const QSize& size) { resize(size.grownBy(contentsMargins())); }

QSize SkinFrame::SurfaceAround(const QSize& content) const {
  return content + QSize(2 * kBorder, bar_->sizeHint().height() + kBorder);
}

bool SkinFrame::IsLoose() const { return !isMaximized() && !isFullScreen(); }

void SkinFrame::MakeRoomForShadow() {
  const bool has_shadow = IsLoose() && HasCompositor();
  setContentsMargins(has_shadow ? QMargins(kShadow, kShadow, kShadow, kShadow) : QMargins());
  if (windowHandle() != nullptr) {
    DeclareShadow(*windowHandle(), contentsMargins());
  }
}

void SkinFrame::showEvent(QShowEvent* event) {
  DeclareShadow(*windowHandle(), contentsMargins());
  QWidget::showEvent(event);
}

// Corners that cannot be transparent are cut off.
void SkinFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (IsLoose() && contentsMargins().isNull()) {
    QPainterPath shape;
    shape.addRoundedRect(rect(), kCornerRadius, kCornerRadius);
    setMask(QRegion(shape.toFillPolygon().toPolygon()));
  } else {
    clearMask();
  }
}

void SkinFrame::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) {
    MakeRoomForShadow();
  } else if (event->type() == QEvent::ActivationChange) {
    const QRect surface = Surface();
    const QMargins before = contentsMargins();
    MakeRoomForShadow();
    if (before != contentsMargins()) {  // a compositor was started, or has ended
      setGeometry(surface.marginsAdded(contentsMargins()));
    }
  }
}

void SkinFrame::paintEvent(QPaintEvent*) {
  const QRectF surface = rect().marginsRemoved(contentsMargins());
  const QColor window = palette().color(QPalette::Window);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!contentsMargins().isNull()) {
    PaintShadow(painter, surface);
  }
  const qreal radius = IsLoose() ? kCornerRadius : 0;
  painter.setPen(Mixed(window, palette().color(QPalette::WindowText), 0.3));
  painter.setBrush(window);
  painter.drawRoundedRect(surface.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

Qt::Edges SkinFrame::EdgesAt(const QPoint& place) const {
  const QRect surface = rect().marginsRemoved(contentsMargins());
  if (!IsLoose() || surface.marginsRemoved({kBorder, 0, kBorder, kBorder}).contains(place)) {
    return {};
  }
  Qt::Edges edges;
  edges.setFlag(Qt::LeftEdge, place.x() < surface.left() + kCornerZone);
  edges.setFlag(Qt::RightEdge, place.x() > surface.right() - kCornerZone);
  edges.setFlag(Qt::TopEdge, place.y() < surface.top() + kCornerZone);
  edges.setFlag(Qt::BottomEdge, place.y() > surface.bottom() - kCornerZone);
  return edges;
}

void SkinFrame::keyPressEvent(QKeyEvent* event) {
  if (!PressByEnter(*this, *event)) {
    QWidget::keyPressEvent(event);
  }
}

void SkinFrame::mouseMoveEvent(QMouseEvent* event) {
  setCursor(CursorOf(EdgesAt(event->position().toPoint())));
}

void SkinFrame::mousePressEvent(QMouseEvent* event) {
  const Qt::Edges edges = EdgesAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && edges != Qt::Edges()) {
    windowHandle()->startSystemResize(edges);
  }
}

}  // namespace quayline
