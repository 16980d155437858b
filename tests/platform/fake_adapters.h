// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>

#include "platform/adapters.h"

namespace quayline::testing {

// A computer with the adapters that a test gives it. `local_addresses` is what LocalAddress()
// finds, by host; the empty host is the internet.
class FakeAdapters final : public Adapters {
 public:
  QList<Adapter> List() const override { return adapters; }
  QString LocalAddress(const QString& host) const override { return local_addresses.value(host); }
  QStringList AddressTable() const override { return address_table; }

  QList<Adapter> adapters;
  QHash<QString, QString> local_addresses;
  QStringList address_table;
};

}  // namespace quayline::testing
