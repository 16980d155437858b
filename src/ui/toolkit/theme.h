// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QObject>
#include <QPalette>
#include <QSize>
#include <QWidget>

class QApplication;
class QPainter;

namespace quayline {

// The accent on top of the system's palette: a deep harbour blue-green, lighter in a dark palette.
// It follows a palette that changes while the program runs. One object, owned by main().
class Theme final : public QObject {
  Q_OBJECT

 public:
  explicit Theme(QApplication& application);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Apply();

  QApplication& application_;
  bool applying_ = false;
};

bool IsDark(const QPalette& palette);
// `share` of `over` (0 to 1) on `under`.
QColor Mixed(const QColor& under, const QColor& over, qreal share);
// The background of a group of controls.
void PaintCard(QPainter& painter, const QRect& place, const QPalette& palette);
// For a text about what is wrong, or a frame around it.
QColor ErrorColor(const QPalette& palette);
QColor WarningColor(const QPalette& palette);

// An icon of icons/<name>.svg, drawn at any size in the palette's colour of `role` at that moment.
QIcon ThemeIcon(const QString& name, QPalette::ColorRole role = QPalette::ButtonText);
// The property of a field that gets a red frame.
inline constexpr char kHasProblem[] = "has_problem";

// Gives a window its size, or what the screen has room for beside the window's frame.
void ResizeOnScreen(QWidget& window, const QSize& wanted);
// The same, and puts the window over the one that opens it: its parent, or the active window.
void OpenOver(QWidget& window, const QSize& wanted);

// The program's logo in its own colours.
QIcon ProgramLogo();

}  // namespace quayline
