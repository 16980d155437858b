// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class TitleBar;
}

namespace quayline {

enum class TitleButtons { kClose, kMinimiseAndClose };

// The title of a window without a frame of the system: shows the window's title, moves the window,
// minimises and closes it. A double click maximises a window that can be minimised.
class TitleBar final : public QWidget {
  Q_OBJECT

 public:
  TitleBar(TitleButtons buttons, QWidget* window);
  ~TitleBar() override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void ShowActive();

  TitleButtons buttons_;
  std::unique_ptr<Ui::TitleBar> ui_;
  std::optional<QPoint> pressed_;  // from the window's corner, until the system moves the window
  bool is_moving_ = false;         // the window follows the pointer by itself
};

}  // namespace quayline
