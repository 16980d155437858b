// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/firewall_words.h"

#include "ui/network/firewall_texts.h"

namespace quayline {

QString FirewallName(FirewallKind kind) {
  switch (kind) {
    case FirewallKind::kFirewalld:
      return QStringLiteral("firewalld");
    case FirewallKind::kUfw:
      return QStringLiteral("ufw");
    case FirewallKind::kNftables:
      return QStringLiteral("nftables");
    case FirewallKind::kNone:
      break;
  }
  return {};
}

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
