// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/echoes.h"

namespace quayline {

// Uses the kernel's echo sockets, which need no privilege. The system has to allow them to the
// user's group (net.ipv4.ping_group_range), as most desktop systems do.
class LinuxEchoes final : public Echoes {
 public:
  Task<EchoReply> Send(QString target, int ttl, std::chrono::milliseconds limit) override;
};

}  // namespace quayline
