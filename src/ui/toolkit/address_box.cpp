// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/address_box.h"

#include <QComboBox>

namespace quayline {

void FillLocalAddresses(QComboBox& box, const QStringList& addresses) {
  box.clear();
  box.addItems(addresses);
  box.setCurrentIndex(addresses.isEmpty() ? -1 : 0);
}

}  // namespace quayline
