// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quayline {

// What a program that the helper starts needs of root's rights.
enum class NeededRights {
  kNetworkOnly,      // nft
  kNetworkAndFiles,  // ufw, which also keeps its rules in files of root
};

// Gives up every other right of this process and of those that it starts, its environment, and the
// way to get rights back. False if the system refuses.
bool DropRights(NeededRights needed);

}  // namespace quayline
