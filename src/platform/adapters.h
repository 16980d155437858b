// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quayline {

// One network adapter of this computer. The addresses are dotted IPv4 text, "0.0.0.0" if the
// adapter has none.
struct Adapter {
  QString description;
  int index = 0;  // the system's own number of the adapter
  QString address = QStringLiteral("0.0.0.0");
  QString mask = QStringLiteral("0.0.0.0");
  QString gateway = QStringLiteral("0.0.0.0");
};

// The adapters of the running system.
class Adapters {
 public:
  virtual ~Adapters() = default;

  // All adapters, in the system's order. Every call asks the system again, which takes well under a
  // millisecond. Empty when the system gives no answer.
  virtual QList<Adapter> List() const = 0;

  // The address from which this computer would reach `host` (dotted IPv4 text), or an empty text.
  // With an empty host: the address of the adapter that leads to the internet.
  virtual QString LocalAddress(const QString& host) const = 0;

  // Every IPv4 address of this computer as dotted text, in the system's order, loopback included.
  virtual QStringList AddressTable() const = 0;
};

// The place of the first adapter whose address, mask and gateway all are set (none begins with
// "0"), else of the last adapter; -1 without adapters.
qsizetype PreselectedAdapter(const QList<Adapter>& adapters);

// The gateway of the preselected adapter; "0.0.0.0" without adapters.
QString DefaultGateway(const QList<Adapter>& adapters);

// The address from which this computer reaches `router`, or the internet if the router's address is
// unknown. Empty if it reaches neither.
QString AddressTowards(const QString& router, const Adapters& adapters);

// The addresses of `table` that ports can be forwarded to: all but "0.0.0.0" and "127.0.0.1". If
// `first` is one of them, the list begins with it.
QStringList ForwardableAddresses(QStringList table, const QString& first = {});

}  // namespace quayline
