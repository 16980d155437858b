// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

#include "core/port_entry.h"
#include "core/port_range.h"
#include "i18n/sentence.h"
#include "platform/listeners.h"

namespace quayline {

enum class ListenState {
  kNobody,     // no program listens on any port of the entry
  kElsewhere,  // one does, but on an address that the router does not reach
  kListens,
  kUnknown,  // the system does not say
};

// Whether a program of this computer waits for what the router forwards.
struct Listening {
  ListenState state = ListenState::kUnknown;
  QString program;           // of kListens; empty where this user may not see its name
  QString address;           // of kElsewhere: where it listens
  QList<PortRange> ports;    // of the entry
  QList<PortRange> lacking;  // ports on which no program listens; of kListens, if there are any
  // Of an entry for both protocols, the only one on which somebody listens: "TCP" or "UDP".
  QString only_protocol;

  bool operator==(const Listening&) const = default;
};

// Nothing for an entry that leads to another computer: `own_addresses` are those of this one.
// `listeners` is what the system answered.
std::optional<Listening> ListeningOf(const PortEntry& entry, const QStringList& own_addresses,
                                     const std::optional<QList<Listener>>& listeners);

// "nothing listens on 8080", "listens on 127.0.0.1 only", "sshd listens", "unknown".
Sentence ListeningText(const Listening& listening);

}  // namespace quayline
