// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/enter_key.h"

#include <QCheckBox>
#include <QKeyEvent>

namespace quayline {

bool PressByEnter(const QWidget& window, const QKeyEvent& key) {
  const bool is_enter = (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
                        (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  auto* button = qobject_cast<QAbstractButton*>(window.focusWidget());
  if (!is_enter || button == nullptr || qobject_cast<QCheckBox*>(button) != nullptr) {
    return false;
  }
  button->click();
  return true;
}

}  // namespace quayline
