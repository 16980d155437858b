// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/title_bar.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include "ui/toolkit/theme.h"
#include "ui_title_bar.h"

namespace quayline {

TitleBar::TitleBar(TitleButtons buttons, QWidget* window)
    : QWidget(window), buttons_(buttons), ui_(std::make_unique<Ui::TitleBar>()) {
  ui_->setupUi(this);
  constexpr QSize kLogoSize(20, 20);
  ui_->title_logo_label->setPixmap(ProgramLogo().pixmap(kLogoSize, devicePixelRatioF()));
  QFont bold = font();
  bold.setBold(true);
  ui_->title_label->setFont(bold);
  ui_->title_minimise_button->setIcon(ThemeIcon(QStringLiteral("minimise")));
  ui_->title_minimise_button->setVisible(buttons == TitleButtons::kMinimiseAndClose);
  ui_->title_close_button->setIcon(ThemeIcon(QStringLiteral("close")));
  connect(ui_->title_minimise_button, &QToolButton::clicked, window, &QWidget::showMinimized);
  connect(ui_->title_close_button, &QToolButton::clicked, window, &QWidget::close);
  window->installEventFilter(this);
}

TitleBar::~TitleBar() = default;

bool TitleBar::eventFilter(QObject*, QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowTitleChange:
      ui_->title_label->setText(window()->windowTitle());
      break;
    case QEvent::ActivationChange:
      ShowActive();
      break;
    default:
      break;
  }
  return false;
}

void TitleBar::ShowActive() {
  const auto role = isActiveWindow() ? QPalette::WindowText : QPalette::PlaceholderText;
  ui_->title_label->setForegroundRole(role);
}

// The system moves the window from the first movement on: a press alone may begin a double click.
void TitleBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressed_ = event->globalPosition().toPoint() - window()->pos();
  }
}

void TitleBar::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_ || !event->buttons().testFlag(Qt::LeftButton)) {
    return;
  }
  const QPoint corner = event->globalPosition().toPoint() - *pressed_;
  if (!is_moving_ &&
      (corner - window()->pos()).manhattanLength() < QApplication::startDragDistance()) {
    return;
  }
  if (!is_moving_ && window()->windowHandle()->startSystemMove()) {
    pressed_.reset();
    return;
  }
  // Without a window manager that can do it.
  is_moving_ = true;
  window()->move(corner);
}

void TitleBar::mouseReleaseEvent(QMouseEvent*) {
  pressed_.reset();
  is_moving_ = false;
}

void TitleBar::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && buttons_ == TitleButtons::kMinimiseAndClose) {
    window()->setWindowState(window()->windowState() ^ Qt::WindowMaximized);
  }
}

}  // namespace quayline
