// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/details_area.h"

#include <QEvent>

namespace quayline {

namespace {

constexpr int kGap = 16;                 // to what is above
constexpr QSize kUnseenSize(1024, 768);  // at which pages are laid out while they are not shown

}  // namespace

void DetailsArea::SetOpen(bool open) {
  is_open_ = open;
  setSizePolicy(QSizePolicy::Expanding, open ? QSizePolicy::Expanding : QSizePolicy::Fixed);
  PlaceContent();
  updateGeometry();
}

QSize DetailsArea::sizeHint() const {
  return is_open_ ? Content()->sizeHint() + QSize(0, kGap) : QSize(0, 0);
}

QSize DetailsArea::minimumSizeHint() const {
  return is_open_ ? Content()->minimumSizeHint() + QSize(0, kGap) : QSize(0, 0);
}

bool DetailsArea::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    updateGeometry();  // the content's smallest size has changed
  }
  return QWidget::event(event);
}

void DetailsArea::resizeEvent(QResizeEvent*) { PlaceContent(); }

void DetailsArea::PlaceContent() {
  Content()->setGeometry(is_open_ ? rect().adjusted(0, kGap, 0, 0)
                                  : QRect(QPoint(0, kGap), kUnseenSize));
}

}  // namespace quayline
