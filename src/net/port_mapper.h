// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <chrono>
#include <expected>

#include "async/task.h"
#include "core/port_entry.h"
#include "i18n/message.h"

namespace quayline {

// What the router answered for an entry: the worst of what it answered for its ports.
enum class MappingResult {
  kOpen,
  kForGood,  // open without an end, although one was asked for
  kShorter,  // open, and the router ends it earlier than it was asked to
  kMissing,
  kUnknown,
  kTaken,
  kRefused
};

enum class MappingVerb { kFind, kOpen, kCheck, kClose };

struct MappingRequest {
  MappingVerb verb = MappingVerb::kFind;
  QString router;  // its address, or its name
  // Each leads to a dotted address. See CanBeMapped().
  QList<PortEntry> entries;
  std::chrono::seconds time{0};  // how long the ports stay open; 0: until they are closed
};

struct MappingAnswer {
  QString protocol;              // "UPnP", "NAT-PMP"; empty: the router opens no ports this way
  QString outside_address;       // of the router; empty: it did not say
  QList<MappingResult> results;  // one an entry
};

// Whether the entry has valid ports, not too many of them, and an address.
bool CanBeMapped(const PortEntry& entry);

// Asks the router by UPnP, or else by NAT-PMP, in a process of its own. The error is a message for
// the user. Destroying the task ends the process: ports that it has opened by then stay open.
Task<std::expected<MappingAnswer, Message>> AskRouterToMap(MappingRequest request);

}  // namespace quayline
