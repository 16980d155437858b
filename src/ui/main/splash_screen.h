// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

namespace quayline {

// What is on screen while the main window gets ready behind it. Shows itself for a second and a
// half, then says so and goes.
class SplashScreen final : public QWidget {
  Q_OBJECT

 public:
  SplashScreen();

 Q_SIGNALS:
  // The main window's turn. The splash is still there and closes right behind.
  void timeForMainWindow();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void GiveWay();

  QTimer close_timer_;
};

}  // namespace quayline
