// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <chrono>

#include "async/task.h"

namespace quayline {

struct NeighbourAnswer {
  enum class Kind {
    kAnswers,
    kSilence,  // no device of the network has the address
    kUnknown,  // the question could not be asked, or had no result within the time
  };

  Kind kind = Kind::kUnknown;
  QByteArray hardware_address;  // of the device that answers, usually six bytes
};

// Asks the devices of the network that an adapter is connected to.
class Neighbours {
 public:
  virtual ~Neighbours() = default;

  // Whether a device has this IPv4 address, by ARP: programs and firewalls of the device do not
  // matter. A silence takes about three seconds. Waits in the background; destroying the task ends
  // the wait. This computer's own addresses have no neighbour.
  virtual Task<NeighbourAnswer> Ask(int adapter, quint32 address,
                                    std::chrono::milliseconds limit) = 0;
};

}  // namespace quayline
