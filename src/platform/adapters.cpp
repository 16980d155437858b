// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/adapters.h"

#include <algorithm>

namespace quayline {

namespace {

bool IsSet(const QString& address) { return !address.startsWith(QLatin1Char('0')); }

bool IsInUse(const Adapter& adapter) {
  return IsSet(adapter.address) && IsSet(adapter.mask) && IsSet(adapter.gateway);
}

}  // namespace

qsizetype PreselectedAdapter(const QList<Adapter>& adapters) {
  const auto in_use = std::find_if(adapters.begin(), adapters.end(), IsInUse);
  return in_use == adapters.end() ? adapters.size() - 1 : in_use - adapters.begin();
}

QString DefaultGateway(const QList<Adapter>& adapters) {
  return adapters.isEmpty() ? Adapter().gateway : adapters[PreselectedAdapter(adapters)].gateway;
}

QString AddressTowards(const QString& router, const Adapters& adapters) {
  const QString address =
      router.isEmpty() || !IsSet(router) ? QString() : adapters.LocalAddress(router);
  return address.isEmpty() ? adapters.LocalAddress(QString()) : address;
}

QStringList ForwardableAddresses(QStringList table, const QString& first) {
  table.removeAll(QStringLiteral("0.0.0.0"));
  table.removeAll(QStringLiteral("127.0.0.1"));
  if (table.removeAll(first) > 0) {
    table.prepend(first);
  }
  return table;
}

}  // namespace quayline
