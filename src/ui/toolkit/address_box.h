// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QComboBox;

namespace quayline {

// Puts this computer's addresses into the list of `box` and selects the first. Former items are
// removed.
void FillLocalAddresses(QComboBox& box, const QStringList& addresses);

}  // namespace quayline
