// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quayline {

// How quayline-firewall-helper ends. 126 and 127 are those of pkexec.
enum class HelperCode {
  kDone = 0,
  kFailed = 1,      // standard error has the reason
  kUsage = 2,       // arguments that it does not know
  kMissing = 3,     // nft or ufw is not installed
  kRights = 4,      // not started as root
  kStopped = 5,     // standard input was closed
  kNoFirewall = 6,  // nothing filters: there is nothing to open
};

}  // namespace quayline
