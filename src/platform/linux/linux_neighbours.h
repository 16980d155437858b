// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/neighbours.h"

namespace quayline {

// Sends an empty datagram, before which the kernel asks by ARP who has the address, and reads the
// result from the kernel's table of neighbours. Needs no privilege.
class LinuxNeighbours final : public Neighbours {
 public:
  Task<NeighbourAnswer> Ask(int adapter, quint32 address, std::chrono::milliseconds limit) override;
};

}  // namespace quayline
