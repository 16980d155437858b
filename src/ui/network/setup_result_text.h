// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/translator.h"
#include "net/static_address.h"

namespace quayline {

// Why a change of an adapter was not made, and whether the former settings are in effect again.
QString SetupResultText(const SetupResult& result, const Translator& translator);

const Message& FaultText(AddressFault fault);

}  // namespace quayline
