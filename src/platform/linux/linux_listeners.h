// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/listeners.h"

namespace quayline {

// Asks the kernel for its sockets (NETLINK_SOCK_DIAG), in the network namespace of the process.
// Programs are found by their open files: those of other users stay without a name.
class LinuxListeners final : public Listeners {
 public:
  std::optional<QList<Listener>> List() const override;
};

}  // namespace quayline
