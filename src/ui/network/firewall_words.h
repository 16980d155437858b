// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/translator.h"
#include "platform/firewall.h"

namespace quayline {

// Why a firewall could not be changed, or, with `is_look`, could not be read. A sentence.
QString FirewallErrorText(const FirewallError& error, bool is_look, const Translator& translator);

}  // namespace quayline
