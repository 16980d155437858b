// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>
#include <optional>

#include "platform/adapters.h"
#include "platform/address_setup.h"
#include "platform/neighbours.h"

namespace quayline {

// What the user typed for a fixed address. "0.0.0.0" stands for no DNS server.
struct TypedAddresses {
  QString address;
  QString mask;
  QString gateway;
  QString first_server;
  QString second_server;
};

enum class AddressField { kAddress, kMask, kGateway, kFirstServer, kSecondServer };

enum class AddressFault {
  kNoAddress,       // is not four numbers up to 255 with dots
  kNotOfComputer,   // is an address, but never one of a computer: "127.0.0.1", "224.0.0.5"
  kNoMask,          // ones and then zeros, with room for a computer
  kOutsideNetwork,  // of the router
  kNetworkItself,   // the first address of the network
  kBroadcast,       // the last one
  kRoutersOwn,
};

struct AddressProblem {
  AddressField field = AddressField::kAddress;
  AddressFault fault = AddressFault::kNoAddress;

  bool operator==(const AddressProblem&) const = default;
};

// The addresses as they are set, or the first thing that is wrong with them. Without a DNS server
// the router is one.
std::expected<FixedAddress, AddressProblem> CheckAddresses(const TypedAddresses& typed);

// An address in the network of `current` that routers seldom give away: its last number is 125 to
// 249.
QString RandomAddress(const QString& current);

// The address to offer: the one that was set last, if it begins with the same three numbers as
// `random`.
QString OfferedAddress(const QString& random, const QString& last_set);

struct StaticOutcome {
  std::optional<AddressProblem> problem;  // nothing was changed
  QByteArray taken_by;  // the hardware address of the device that has the address; nothing changed
  SetupResult result;

  bool IsDone() const { return !problem && taken_by.isEmpty() && result.IsDone(); }
};

// Gives an adapter a fixed address, after everything that can be checked before has been.
class StaticAddress final {
 public:
  // What is referred to outlives it.
  StaticAddress(AddressSetup& setup, Neighbours& neighbours, const Adapters& adapters)
      : setup_(setup), neighbours_(neighbours), adapters_(adapters) {}

  Task<StaticOutcome> Set(int adapter, TypedAddresses typed);

 private:
  AddressSetup& setup_;
  Neighbours& neighbours_;
  const Adapters& adapters_;
};

}  // namespace quayline
