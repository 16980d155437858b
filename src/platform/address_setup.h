// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>

#include "async/task.h"

namespace quayline {

// The result of a change of an adapter's addresses, with the numbers by which such results are
// known.
enum class SetupCode {
  kDone = 0,
  kRestartNeeded = 1,  // done, and takes effect when the computer has been restarted
  kNotSupported = 64,
  kUnknownFailure = 65,
  kInvalidMask = 66,
  kBadInstance = 67,  // an answer of the system was not understood
  kInvalidParameter = 68,
  kInvalidAddress = 70,
  kInvalidGateway = 71,
  kInvalidSecurity = 79,
  kCannotConfigure = 80,
  kCannotConfigureDhcp = 81,
  kNotEnabled = 84,  // the adapter has no IPv4
  kInvalidFrame = 87,
  kInvalidNetwork = 88,
  kOutOfBounds = 90,
  kAccessDenied = 91,
  kOutOfMemory = 92,
  kNotConfigurable = 97,
  kDhcpNotEnabled = 100,
};

struct SetupResult {
  enum class Undo {
    kNotNeeded,   // the change is in effect, or nothing was changed
    kRolledBack,  // the change was made, and the former settings are in effect again
    kFailed,      // the change was made, and could not be taken back
    kUnknown,     // no answer: the change may have been made, or may still be
  };

  SetupCode code = SetupCode::kDone;
  Undo undo = Undo::kNotNeeded;
  bool is_service_missing = false;  // this system has no service that could do it
  QString detail;                   // what the service says, in its own words; may be empty

  bool IsDone() const { return code == SetupCode::kDone || code == SetupCode::kRestartNeeded; }
};

// An adapter that has an IPv4 address and can be changed.
struct SetupAdapter {
  QString description;
  int index = 0;  // the system's own number of the adapter
};

// What an adapter uses now. Dotted IPv4 text; "0.0.0.0" is a missing address.
struct AdapterAddresses {
  QString address = QStringLiteral("0.0.0.0");
  QString mask = QStringLiteral("0.0.0.0");
  QString gateway = QStringLiteral("0.0.0.0");
  QString first_server = QStringLiteral("0.0.0.0");
  QString second_server = QStringLiteral("0.0.0.0");
  bool is_automatic = false;  // the router gives them
};

// What a fixed address consists of: valid IPv4 addresses.
struct FixedAddress {
  quint32 address = 0;
  int prefix_length = 0;
  quint32 gateway = 0;
  QList<quint32> servers;  // for names, one or two
};

// Changes the addresses of this computer's adapters, through the system's own service. A change is
// made as a whole or not at all: one that fails, or after which the gateway does not answer, is
// taken back. So is one that the program does not live to confirm.
class AddressSetup {
 public:
  virtual ~AddressSetup() = default;

  virtual Task<std::expected<QList<SetupAdapter>, SetupResult>> List() = 0;
  virtual Task<std::expected<AdapterAddresses, SetupResult>> Read(int adapter) = 0;
  // Replaces the adapter's addresses, its gateway and its DNS servers.
  virtual Task<SetupResult> SetFixed(int adapter, FixedAddress wanted) = 0;
  // The router gives all of them again.
  virtual Task<SetupResult> SetAutomatic(int adapter) = 0;
};

}  // namespace quayline
