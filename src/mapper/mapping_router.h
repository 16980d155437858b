// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QString>

#include <memory>
#include <optional>

namespace quayline::mapper {

// A rule for one port, which is the same outside and inside.
struct Mapping {
  bool udp = false;
  quint16 port = 0;
  QHostAddress to;
  QString name;
  quint32 seconds = 0;  // 0: until it is removed
};

// What is known of a rule. The router was asked for it, where it can be asked.
enum class MappingState {
  kOpen,     // the router has it
  kForGood,  // the router has it, without an end, although one was asked for
  kShorter,  // the router has it, and ends it earlier than it was asked to
  kMissing,  // the router does not have it
  kTaken,    // the port leads to another computer
  kRefused,  // the router does not let this computer make it
  kUnknown   // no answer, or the router cannot be asked
};

// A router that opens ports on request. The calls wait for its answer, a few seconds at most.
class MappingRouter {
 public:
  virtual ~MappingRouter() = default;

  virtual QString Protocol() const = 0;  // "upnp", "nat-pmp"
  // The router's address on the internet, or empty.
  virtual QString OutsideAddress() = 0;
  virtual MappingState Open(const Mapping& mapping) = 0;
  virtual MappingState Check(const Mapping& mapping) = 0;
  // Removes the rule where it is this one. kMissing is success.
  virtual MappingState Close(const Mapping& mapping) = 0;
};

// Nothing if the router at this address does not speak the protocol. No other device is listened
// to.
std::unique_ptr<MappingRouter> FindUpnp(const QHostAddress& router);
std::unique_ptr<MappingRouter> FindNatPmp(const QHostAddress& router);

}  // namespace quayline::mapper
