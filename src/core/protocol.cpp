// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/protocol.h"

namespace quayline {

QString ProtocolText(Protocol protocol) {
  switch (protocol) {
    case Protocol::kTcp:
      return QStringLiteral("TCP");
    case Protocol::kUdp:
      return QStringLiteral("UDP");
    case Protocol::kBoth:
      break;
  }
  return QStringLiteral("TCP/UDP");
}

std::optional<Protocol> ProtocolOf(const QString& text) {
  for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp, Protocol::kBoth}) {
    if (text.compare(ProtocolText(protocol), Qt::CaseInsensitive) == 0) {
      return protocol;
    }
  }
  return std::nullopt;
}

}  // namespace quayline
