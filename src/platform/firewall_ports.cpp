// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/firewall_ports.h"

#include <QRegularExpression>

#include <algorithm>

namespace quayline {

namespace {

constexpr int kLastPort = 65535;
const QLatin1String kOwnName("QYL Port ");

}  // namespace

QString PortsText(int first, int last) {
  return first == last ? QString::number(first) : QStringLiteral("%1-%2").arg(first).arg(last);
}

QString ProtocolWord(int protocol) {
  return protocol == kTcpNumber   ? QStringLiteral("TCP")
         : protocol == kUdpNumber ? QStringLiteral("UDP")
                                  : QString();
}

QString OwnRuleName(const FirewallPorts& ports) {
  return kOwnName + PortsText(ports.first, ports.last) + QLatin1Char(' ') +
         ProtocolWord(ports.protocol);
}

bool IsOwnRuleName(const QString& name) {
  constexpr qsizetype kCompared = 8;
  return name.left(kCompared).compare(kOwnName.left(kCompared), Qt::CaseInsensitive) == 0;
}

QString PortsArgument(const FirewallPorts& ports) {
  return ProtocolWord(ports.protocol).toLower() + QLatin1Char(':') +
         PortsText(ports.first, ports.last);
}

std::optional<FirewallPorts> ParsePortsArgument(const QString& argument) {
  static const QRegularExpression form(
      QStringLiteral("\\A(tcp|udp):([1-9][0-9]{0,4})(?:-([1-9][0-9]{0,4}))?\\z"));
  const QRegularExpressionMatch match = form.match(argument);
  const int first = match.captured(2).toInt();
  const int last = match.captured(3).isEmpty() ? first : match.captured(3).toInt();
  if (!match.hasMatch() || last < first || last > kLastPort) {
    return std::nullopt;
  }
  return FirewallPorts{
      .first = first,
      .last = last,
      .protocol = match.captured(1) == QLatin1String("tcp") ? kTcpNumber : kUdpNumber};
}

PortSet& PortSet::Fill(int first, int last) {
  for (int port = std::max(first, 0); port <= std::min(last, kLast); ++port) {
    ports_.set(static_cast<size_t>(port));
  }
  return *this;
}

bool PortSet::HasAll(int first, int last) const {
  for (int port = first; port <= last; ++port) {
    if (port < 0 || port > kLast || !ports_.test(static_cast<size_t>(port))) {
      return false;
    }
  }
  return true;
}

}  // namespace quayline
