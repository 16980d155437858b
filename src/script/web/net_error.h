// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include "i18n/message.h"

namespace quayline {

// The engine's negative numbers for connections and loads that failed.

// The number of an error by the name that the engine's error page shows ("ERR_EMPTY_RESPONSE").
int NetErrorNamed(const QString& name);

// The cause of a failed load, where its status does not say it. The text has a place for the
// host.
std::optional<Message> CauseOfNetError(int net_error);

}  // namespace quayline
