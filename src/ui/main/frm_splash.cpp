// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/frm_splash.h"

#include <QBitmap>
#include <QCloseEvent>
#include <QPainter>
#include <QPainterPath>

#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_splash.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kCorner = 19;  // width and height of the corner ellipses

}  // namespace

FrmSplash::FrmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setAttribute(Qt::WA_TranslucentBackground);  // the corners, where the desktop can
  Ui::FrmSplash form;
  form.setupUi(this);
  form.ImageLogo->setPixmap(ProgramLogo().pixmap(QSize(96, 96), devicePixelRatioF()));
  QFont title = form.Label1->font();
  title.setPointSizeF(title.pointSizeF() * 1.8);
  title.setBold(true);
  form.Label1->setFont(title);
  form.Label2->setText(QStringLiteral("v.%1").arg(ProgramVersion()));
  form.dBar1->SetMoving(true);
  timer1_.setSingleShot(true);
  connect(&timer1_, &QTimer::timeout, this, &FrmSplash::GiveWay);
  timer1_.start(1500ms);
}

void FrmSplash::GiveWay() {
  Q_EMIT timeForMainWindow();
  close();
}

// Closed ahead of its time, it brings up no window any more.
void FrmSplash::closeEvent(QCloseEvent* event) {
  timer1_.stop();
  event->accept();
}

void FrmSplash::resizeEvent(QResizeEvent*) {
  QPainterPath shape;
  shape.addRoundedRect(rect(), kCorner / 2.0, kCorner / 2.0);
  setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void FrmSplash::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner / 2.0, kCorner / 2.0);
}

}  // namespace quayline
