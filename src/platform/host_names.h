// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

#include "async/task.h"

namespace quayline {

// Looks up the names of computers.
class HostNames {
 public:
  virtual ~HostNames() = default;

  // The short name of the computer at `address` (dotted IPv4 text). Empty if the address is invalid
  // or has no name, and if no answer comes in time. Destroying the task cancels the look-up.
  virtual Task<QString> OfAddress(QString address) = 0;
};

// Asks the system's resolver, which never blocks the caller. Name servers that are down keep it
// busy for half a minute and more: the look-up ends after `limit`.
class SystemHostNames final : public HostNames {
 public:
  explicit SystemHostNames(std::chrono::milliseconds limit = std::chrono::seconds(5))
      : limit_(limit) {}

  Task<QString> OfAddress(QString address) override;

 private:
  std::chrono::milliseconds limit_;
};

// What a list row and a router can hold of a resolver's answer: the part before the first ".", at
// most 256 characters, without characters that would end a field. Empty for an address, which is
// how the resolver says that it has no name.
QString ShortHostName(const QString& name);

}  // namespace quayline
