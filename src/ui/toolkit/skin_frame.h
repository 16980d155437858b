// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "ui/toolkit/title_bar.h"

namespace quayline {

// A window with a frame of its own in place of the system's: a rounded surface with a title bar and
// a shadow. The window system moves it by the title bar, and sizes it by its edges. Its contents
// margins are the room of the shadow: none where the desktop cannot show one, or if it is
// maximised.
class SkinFrame : public QWidget {
  Q_OBJECT

 public:
  SkinFrame(TitleButtons buttons, QWidget* parent);

  // What the user sees as the window: without the shadow, on the screen.
  QRect Surface() const { return geometry().marginsRemoved(contentsMargins()); }
  void MoveSurface(const QPoint& corner);
  void ResizeSurface(const QSize& size);
  // The size of a surface around a content of this size.
  QSize SurfaceAround(const QSize& content) const;

 protected:
  // Puts the content below the title bar, whose buttons follow it in the order of Tab. Once.
  void SetContent(QWidget* content);

  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void MakeRoomForShadow();
  bool IsLoose() const;  // neither maximised nor on the whole screen
  Qt::Edges EdgesAt(const QPoint& place) const;

  TitleButtons buttons_;
  TitleBar* bar_ = nullptr;
};

}  // namespace quayline
