// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QVariantList>

#include <chrono>
#include <expected>

#include "async/task.h"

namespace quayline {

using BusReply = std::expected<QVariantList, QDBusError>;

// Calls a service on a message bus and returns the arguments of its answer. `limit` is long where
// the service may ask the user for a password.
Task<BusReply> CallBus(QDBusConnection bus, QDBusMessage call, std::chrono::milliseconds limit);

}  // namespace quayline
