// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace quayline {

// Ends the editing of the field of `window` that has the focus, as leaving it would: an access key
// or a shortcut starts a command without moving the focus. The focus stays where it is. A field may
// be settled twice in a row.
void SettleFocus(QWidget* window);

// Runs `command` when the user presses `button`, by whatever means, after SettleFocus(window).
template <typename Command>
void ConnectCommand(const QAbstractButton* button, QWidget* window, Command command) {
  QObject::connect(button, &QAbstractButton::clicked, window, [window, command] {
    SettleFocus(window);
    command();
  });
}

}  // namespace quayline
