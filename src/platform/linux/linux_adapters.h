// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/adapters.h"

namespace quayline {

// Asks the kernel over rtnetlink, in the network namespace of the process. Loopback is no adapter;
// an adapter that is switched off or unplugged is one. The description is the interface's name, the
// gateway that of the default route with the lowest metric in the main table.
class LinuxAdapters final : public Adapters {
 public:
  QList<Adapter> List() const override;
  QString LocalAddress(const QString& host) const override;
  QStringList AddressTable() const override;
};

}  // namespace quayline
