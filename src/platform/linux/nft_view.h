// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/firewall.h"
#include "platform/linux/nft_ruleset.h"

namespace quayline {

// What the rules of nftables let in of a new connection from another computer, over `interface` if
// that is known. A match that cannot be judged without the packet (an address, a mark) counts as
// one that it does not meet.
FirewallView NftView(const NftRuleset& ruleset, const QString& interface = {});

}  // namespace quayline
