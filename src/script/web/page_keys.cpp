// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_keys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include "script/key_sequence.h"
#include "script/wait_limits.h"

namespace quayline {

PageKeys::PageKeys(QObject* parent) : QObject(parent) {
  limit_.setSingleShot(true);
  connect(&limit_, &QTimer::timeout, this, &PageKeys::Forget);
}

bool PageKeys::Send(QWidget* target, const QString& keys) {
  const QList<KeyStroke> strokes = ParseKeys(keys);
  if (strokes.isEmpty()) {
    return false;
  }
  under_way_ += static_cast<int>(strokes.size());
  limit_.start(WaitLimits().keys);
  for (const KeyStroke& stroke : strokes) {
    QKeyEvent press(QEvent::KeyPress, stroke.key, stroke.modifiers, stroke.text);
    QKeyEvent release(QEvent::KeyRelease, stroke.key, stroke.modifiers, stroke.text);
    QCoreApplication::sendEvent(target, &press);
    QCoreApplication::sendEvent(target, &release);
  }
  return true;
}

void PageKeys::NoteArrival() {
  if (under_way_ > 1) {
    --under_way_;
  } else if (under_way_ == 1) {
    Forget();
  }
}

void PageKeys::Forget() {
  under_way_ = 0;
  limit_.stop();
  Q_EMIT arrived();
}

}  // namespace quayline
