// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QBasicTimer>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTreeView>

namespace quayline {

// A group of controls on a panel, with its title above them.
class Card final : public QGroupBox {
  Q_OBJECT

 public:
  explicit Card(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakeRoomForTitle();
};

// The one button of a window that does what the window is for, in the accent colour.
class PrimaryButton final : public QPushButton {
  Q_OBJECT

 public:
  explicit PrimaryButton(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

// A text that is clicked like a link; it underlines itself under the mouse and with the focus, and
// is reached and pressed by the keyboard like a button.
class LinkLabel final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit LinkLabel(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
};

// A text that breaks its lines at its width, and has the height that this takes. (A label's own
// minimum is that of two lines, and layouts inside layouts cut it there.)
class WrappedLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit WrappedLabel(QWidget* parent = nullptr);
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool has_width_ = false;  // one that a layout gave it
};

// A bar that moves while something of unknown length is in progress. It takes no time while it is
// hidden.
class AnimationBar final : public QWidget {
  Q_OBJECT

 public:
  explicit AnimationBar(QWidget* parent = nullptr);
  void SetMoving(bool moving);
  bool IsMoving() const { return moving_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void UpdateTimer();

  QBasicTimer timer_;
  int step_ = 0;
  bool moving_ = false;
};

// An image, scaled down where it does not fit. Without one a text is shown.
class PictureView final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString emptyText READ EmptyText WRITE SetEmptyText)

 public:
  explicit PictureView(QWidget* parent = nullptr);
  void SetPicture(const QImage& picture);
  void SetEmptyText(const QString& text);
  QString EmptyText() const { return empty_text_; }
  const QImage& Picture() const { return picture_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage picture_;
  QString empty_text_;
};

// A list of rows that shows a hint while it is empty.
class HintedList final : public QTreeView {
  Q_OBJECT
  Q_PROPERTY(QString hintTitle READ HintTitle WRITE SetHintTitle)
  Q_PROPERTY(QString hintText READ HintText WRITE SetHintText)

 public:
  explicit HintedList(QWidget* parent = nullptr);
  void SetEmptyHint(const QString& title, const QString& text);
  QString HintTitle() const { return hint_title_; }
  void SetHintTitle(const QString& title) { SetEmptyHint(title, hint_text_); }
  QString HintText() const { return hint_text_; }
  void SetHintText(const QString& text) { SetEmptyHint(hint_title_, text); }
  // Each column as wide as its header and its longest text, the last one to the edge. A column to
  // which the user gave a width keeps it.
  void SizeColumns();
  // As if the user had given the column this width.
  void KeepWidth(int column, int width);

 Q_SIGNALS:
  // The user drew a column to this width, or (0) let it size itself again by a double click.
  void columnSized(int column, int width);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void OnSectionResized(int column, int old_width, int width);

  QString hint_title_;
  QString hint_text_;
  QHash<int, int> kept_widths_;  // by column
  bool sizing_ = false;
};

// Turns of the mouse wheel over `control` have no effect.
void IgnoreWheel(QWidget* control);

}  // namespace quayline
