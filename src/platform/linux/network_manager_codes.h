// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusError>

#include "platform/address_setup.h"

namespace quayline {

// What an error of NetworkManager or of the message bus means.
SetupResult ResultOfError(const QDBusError& error);

// Why a device did not become active: NetworkManager's "StateReason" of the device.
SetupCode CodeOfStateReason(quint32 reason);

}  // namespace quayline
