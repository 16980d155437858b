// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quayline {

// The part of a window that the user opens and closes, with one child as its content. Closed, it
// takes no room, and the content keeps a usual size without being seen. It is never hidden: the
// browser's engine gives no animation frames, keys and focus to a page whose view is hidden, and
// such a page may never save.
class DetailsArea final : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  bool IsOpen() const { return is_open_; }
  void SetOpen(bool open);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget* Content() const { return findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly); }
  void PlaceContent();

  bool is_open_ = true;
};

}  // namespace quayline
