// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/settle_focus.h"

#include <QComboBox>
#include <QLineEdit>

namespace quayline {

void SettleFocus(QWidget* window) {
  QWidget* focused = window->focusWidget();
  const auto* box = qobject_cast<QComboBox*>(focused);
  auto* field = box != nullptr ? box->lineEdit() : qobject_cast<QLineEdit*>(focused);
  if (field != nullptr && !field->isReadOnly() && field->hasAcceptableInput()) {
    Q_EMIT field->editingFinished();
  }
}

}  // namespace quayline
