// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

#include "platform/address_setup.h"
#include "platform/linux/network_manager_bus.h"
#include "platform/neighbours.h"

namespace quayline {

// Changes the profile of the adapter's connection with NetworkManager, and lets it take effect
// without disconnecting the adapter. A checkpoint of NetworkManager is around it: unless this
// program confirms the change, NetworkManager takes it back by itself.
class NetworkManagerSetup final : public AddressSetup {
 public:
  struct Limits {
    std::chrono::milliseconds fixed = std::chrono::seconds(15);      // until an address is in use
    std::chrono::milliseconds automatic = std::chrono::seconds(50);  // and until a router gives one
    std::chrono::milliseconds gateway = std::chrono::seconds(10);    // until the gateway answers
    std::chrono::seconds unconfirmed = std::chrono::seconds(120);    // until it is taken back
  };

  // `neighbours` outlives it. The message bus is the system's if `bus_address` is empty.
  explicit NetworkManagerSetup(Neighbours& neighbours, QString bus_address = {})
      : NetworkManagerSetup(neighbours, std::move(bus_address), Limits()) {}
  NetworkManagerSetup(Neighbours& neighbours, QString bus_address, Limits limits);

  Task<std::expected<QList<SetupAdapter>, SetupResult>> List() override;
  Task<std::expected<AdapterAddresses, SetupResult>> Read(int adapter) override;
  Task<SetupResult> SetFixed(int adapter, FixedAddress wanted) override;
  Task<SetupResult> SetAutomatic(int adapter) override;

 private:
  // An active device of NetworkManager.
  struct Device {
    int index = 0;
    QString path;
    QString description;
    QString profile;          // the path of its connection profile
    bool is_foreign = false;  // something else than NetworkManager has configured it
  };
  // What the change makes of the profile, and which addresses it has then.
  struct Change {
    std::function<void(QVariantMap* ipv4)> edit;
    FixedAddress wanted;  // all 0: whichever the router gives
  };

  Task<std::expected<QStringList, SetupResult>> DevicePaths();
  Task<Device> Describe(QString path);
  Task<std::expected<Device, SetupResult>> Find(int adapter);
  Task<std::expected<NetworkProfile, SetupResult>> ReadProfile(Device device);
  Task<SetupResult> Apply(int adapter, Change change);
  Task<SetupResult> WriteProfile(Device device, Change change);
  Task<SetupResult> TakeEffect(Device device, Change change);
  Task<bool> IsInEffect(QVariantMap device, FixedAddress wanted);
  Task<SetupResult> CheckGateway(Device device, FixedAddress wanted);
  Task<SetupResult::Undo> RollBack(QVariant checkpoint, Device device, AdapterAddresses former);
  // Whether the adapter has its former addresses, or, if the router gave them, any from it.
  Task<bool> IsBack(Device device, AdapterAddresses former);

  Neighbours& neighbours_;
  NetworkManagerBus bus_;
  Limits limits_;
};

}  // namespace quayline
