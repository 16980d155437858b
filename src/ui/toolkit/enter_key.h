// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

class QKeyEvent;
class QWidget;

namespace quayline {

// Enter presses the button that has the focus, which Qt does in dialogs only. True if it did.
bool PressByEnter(const QWidget& window, const QKeyEvent& key);

}  // namespace quayline
