// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/controls.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QTimerEvent>

#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

constexpr int kGrid = 8;
constexpr int kButtonHeight = 28;  // that of the other buttons
constexpr int kCornerRadius = 6;
constexpr int kBarHeight = 6;
constexpr int kBarSteps = 100;
constexpr int kBarStepMs = 20;
constexpr int kMaxColumnWidth = 320;

QFont Bold(QFont font) {
  font.setBold(true);
  return font;
}

void PaintFocusRing(QPainter& painter, const QWidget& widget, const QColor& color) {
  painter.setPen(QPen(color, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(widget.rect()).adjusted(3, 3, -3, -3), kCornerRadius - 2,
                          kCornerRadius - 2);
}

class WheelFilter final : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::Wheel; }
};

}  // namespace

void IgnoreWheel(QWidget* control) { control->installEventFilter(new WheelFilter(control)); }

Card::Card(QWidget* parent) : QGroupBox(parent) { MakeRoomForTitle(); }

void Card::MakeRoomForTitle() {
  const int title_height = QFontMetrics(Bold(font())).height();
  setContentsMargins(0, 2 * kGrid + title_height - kGrid / 2, 0, 0);
}

void Card::changeEvent(QEvent* event) {
  QGroupBox::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    MakeRoomForTitle();
  }
}

// Not the group box's own: it would put the margins of the style's frame in place of these.
void Card::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  MakeRoomForTitle();
}

void Card::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintCard(painter, rect(), palette());
  painter.setFont(Bold(font()));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(2 * kGrid, kGrid + kGrid / 2, -2 * kGrid, 0),
                   Qt::AlignTop | Qt::AlignLeft | Qt::TextShowMnemonic, title());
}

PrimaryButton::PrimaryButton(QWidget* parent) : QPushButton(parent) { setFont(Bold(font())); }

QSize PrimaryButton::sizeHint() const {
  const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
  const int icon = this->icon().isNull() ? 0 : iconSize().width() + kGrid;
  return QSize(text.width() + icon + 6 * kGrid, std::max(kButtonHeight, text.height() + kGrid));
}

void PrimaryButton::paintEvent(QPaintEvent*) {
  QColor fill = palette().color(QPalette::Active, QPalette::Highlight);
  QColor ink = palette().color(QPalette::Active, QPalette::HighlightedText);
  if (!isEnabled()) {
    fill = Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.15);
    ink = palette().color(QPalette::Disabled, QPalette::ButtonText);
  } else if (isDown()) {
    fill = fill.darker(120);
  } else if (underMouse()) {
    fill = fill.lighter(112);
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(rect(), kCornerRadius, kCornerRadius);
  if (hasFocus()) {
    PaintFocusRing(painter, *this, ink);
  }
  const QSize text_size = fontMetrics().size(Qt::TextShowMnemonic, text());
  const int icon_room = icon().isNull() ? 0 : iconSize().width() + kGrid;
  QRect content(QPoint(0, 0), QSize(text_size.width() + icon_room, height()));
  content.moveLeft((width() - content.width()) / 2);
  if (!icon().isNull()) {
    const QRect place(content.left(), (height() - iconSize().height()) / 2, iconSize().width(),
                      iconSize().height());
    icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  }
  painter.setPen(ink);
  painter.setFont(font());
  painter.drawText(content.adjusted(icon_room, 0, 0, 0),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, text());
}

LinkLabel::LinkLabel(QWidget* parent) : QAbstractButton(parent) {
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

QSize LinkLabel::sizeHint() const {
  const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
  return QSize(text.width() + 4, text.height() + 4);
}

void LinkLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont link_font = font();
  link_font.setUnderline(isEnabled() && (underMouse() || hasFocus()));
  painter.setFont(link_font);
  const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setPen(palette().color(group, isEnabled() ? QPalette::Link : QPalette::WindowText));
  painter.drawText(rect().adjusted(2, 0, -2, 0),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, text());
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void LinkLabel::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void LinkLabel::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

WrappedLabel::WrappedLabel(QWidget* parent) : QLabel(parent) { setWordWrap(true); }

QSize WrappedLabel::minimumSizeHint() const {
  const QSize least = QLabel::minimumSizeHint();
  return text().isEmpty() || !has_width_ ? least : QSize(least.width(), heightForWidth(width()));
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  has_width_ = true;
  updateGeometry();
}

AnimationBar::AnimationBar(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize AnimationBar::sizeHint() const { return QSize(20 * kGrid, kBarHeight); }

void AnimationBar::SetMoving(bool moving) {
  moving_ = moving;
  UpdateTimer();
  update();
}

void AnimationBar::UpdateTimer() {
  if (moving_ && isVisible()) {
    timer_.start(kBarStepMs, this);
  } else {
    timer_.stop();
  }
}

void AnimationBar::timerEvent(QTimerEvent*) {
  step_ = (step_ + 1) % kBarSteps;
  update();
}

void AnimationBar::showEvent(QShowEvent*) { UpdateTimer(); }

void AnimationBar::hideEvent(QHideEvent*) { UpdateTimer(); }

void AnimationBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const qreal radius = height() / 2.0;
  painter.setBrush(
      Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.12));
  painter.drawRoundedRect(rect(), radius, radius);
  if (!moving_) {
    return;
  }
  const qreal length = width() * 0.25;
  const qreal left = (width() + length) * step_ / kBarSteps - length;
  painter.setClipRect(rect());
  painter.setBrush(palette().color(QPalette::Active, QPalette::Highlight));
  painter.drawRoundedRect(QRectF(left, 0, length, height()), radius, radius);
}

PictureView::PictureView(QWidget* parent) : QWidget(parent) {}

void PictureView::SetPicture(const QImage& picture) {
  picture_ = picture;
  update();
}

void PictureView::SetEmptyText(const QString& text) {
  empty_text_ = text;
  update();
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (picture_.isNull()) {
    painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, empty_text_);
    return;
  }
  QSize size = picture_.size();
  if (size.width() > width() || size.height() > height()) {
    size.scale(this->size(), Qt::KeepAspectRatio);
  }
  QRect place(QPoint(0, 0), size);
  place.moveCenter(rect().center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place, picture_);
}

HintedList::HintedList(QWidget* parent) : QTreeView(parent) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAlternatingRowColors(true);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  connect(header(), &QHeaderView::sectionResized, this, &HintedList::OnSectionResized);
  connect(header(), &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
    kept_widths_.remove(column);
    Q_EMIT columnSized(column, 0);
  });
}

// The width of the last column follows the window, not the user.
void HintedList::OnSectionResized(int column, int, int width) {
  if (!sizing_ && column + 1 < header()->count()) {
    kept_widths_.insert(column, width);
    Q_EMIT columnSized(column, width);
  }
}

void HintedList::KeepWidth(int column, int width) {
  kept_widths_.insert(column, width);
  SizeColumns();
}

void HintedList::SetEmptyHint(const QString& title, const QString& text) {
  hint_title_ = title;
  hint_text_ = text;
  viewport()->update();
}

void HintedList::SizeColumns() {
  const QScopedValueRollback guard(sizing_, true);
  for (int column = 0; column + 1 < header()->count(); ++column) {
    if (const auto kept = kept_widths_.constFind(column); kept != kept_widths_.constEnd()) {
      setColumnWidth(column, *kept);
      continue;
    }
    resizeColumnToContents(column);
    setColumnWidth(column, std::min(columnWidth(column) + kGrid, kMaxColumnWidth));
  }
}

void HintedList::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (!model() || model()->rowCount() > 0) {
    return;
  }
  QPainter painter(viewport());
  const int line = fontMetrics().height();
  const QRect area = viewport()->rect().adjusted(2 * kGrid, 0, -2 * kGrid, 0);
  const int middle = area.center().y();
  painter.setPen(palette().color(QPalette::Text));
  painter.setFont(Bold(font()));
  painter.drawText(QRect(area.left(), middle - line - kGrid, area.width(), line + kGrid / 2),
                   Qt::AlignCenter, hint_title_);
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(QRect(area.left(), middle, area.width(), 3 * line),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, hint_text_);
}

}  // namespace quayline
