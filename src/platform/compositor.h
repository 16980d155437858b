// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>

class QWindow;

namespace quayline {

// Whether the desktop shows what lies under the transparent parts of a window. Where it does not,
// they are black. That may change while the program runs.
bool HasCompositor();
// Tells the desktop how much of a window's edges is shadow, so that it lays what the user sees
// beside other windows and the edges of the screen. Nothing where there is no way to tell it.
void DeclareShadow(const QWindow& window, const QMargins& shadow);

}  // namespace quayline
