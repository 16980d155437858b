// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/splash_screen.h"

#include <QBitmap>
#include <QCloseEvent>
#include <QPainter>
#include <QPainterPath>

#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_splash_screen.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kCorner = 19;  // width and height of the corner ellipses

}  // namespace

SplashScreen::SplashScreen() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setAttribute(Qt::WA_TranslucentBackground);  // transparent corners, if the desktop supports them
  Ui::SplashScreen form;
  form.setupUi(this);
  form.logo_label->setPixmap(ProgramLogo().pixmap(QSize(96, 96), devicePixelRatioF()));
  QFont title = form.title_label->font();
  title.setPointSizeF(title.pointSizeF() * 1.8);
  title.setBold(true);
  form.title_label->setFont(title);
  form.version_label->setText(QStringLiteral("v.%1").arg(ProgramVersion()));
  form.busy_bar->SetMoving(true);
  close_timer_.setSingleShot(true);
  connect(&close_timer_, &QTimer::timeout, this, &SplashScreen::ShowMainWindow);
  close_timer_.start(1500ms);
}

void SplashScreen::ShowMainWindow() {
  Q_EMIT timeForMainWindow();
  close();
}

// Closed early, it does not show the main window any more.
void SplashScreen::closeEvent(QCloseEvent* event) {
  close_timer_.stop();
  event->accept();
}

void SplashScreen::resizeEvent(QResizeEvent*) {
  QPainterPath shape;
  shape.addRoundedRect(rect(), kCorner / 2.0, kCorner / 2.0);
  setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void SplashScreen::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner / 2.0, kCorner / 2.0);
}

}  // namespace quayline
