// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/maker_site.h"

class QWidget;

namespace quayline {

// Hides the controls and menu items of `window` that do nothing yet, and menus that are left empty.
void HideMissingFeatures(QWidget& window, const MakerSite& site);

}  // namespace quayline
