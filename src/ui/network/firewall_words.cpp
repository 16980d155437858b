// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/firewall_words.h"

#include "core/entry_firewall.h"
#include "ui/network/firewall_texts.h"

namespace quayline {

QString FirewallErrorText(const FirewallError& error, bool is_look, const Translator& translator) {
  const QString name = FirewallName(error.kind);
  switch (error.fault) {
    case FirewallFault::kRefused:
      return translator.Text(is_look ? message::kFirewallNotShown : message::kFirewallRefused)
          .arg(name);
    case FirewallFault::kMissing:
      return error.text.isEmpty()
                 ? translator.Text(message::kNoFirewall)
                 : translator.Text(message::kFirewallProgramMissing).arg(error.text);
    case FirewallFault::kFailed:
      break;
  }
  return translator.Text(message::kFirewallFailed).arg(name, error.text);
}

}  // namespace quayline
