// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

namespace quayline {

// Is shown while the main window gets ready. After a second and a half it emits timeForMainWindow()
// and closes.
class SplashScreen final : public QWidget {
  Q_OBJECT

 public:
  SplashScreen();

 Q_SIGNALS:
  // The main window is to be shown. The splash screen closes right after this.
  void timeForMainWindow();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void ShowMainWindow();

  QTimer close_timer_;
};

}  // namespace quayline
