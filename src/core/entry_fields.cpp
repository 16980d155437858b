// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_fields.h"

#include <QRegularExpression>

#include <algorithm>

#include "core/port_range.h"

namespace quayline {

namespace {

constexpr int kMaxDots = 3;
constexpr int kMaxPartDigits = 3;
constexpr int kMaxPart = 255;

bool IsDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

bool MayBePart(const QString& part) {
  return part.size() <= kMaxPartDigits && std::ranges::all_of(part, IsDigit) &&
         part.toInt() <= kMaxPart;
}

bool HasLimits(const RouterSession& session) {
  return session.router_id != 0 || !session.min_port.isEmpty() || !session.max_port.isEmpty() ||
         !session.max_range.isEmpty();
}

}  // namespace

PortLimits LimitsOf(const RouterSession& session) {
  if (!HasLimits(session)) {
    return {};
  }
  return {.min_port = PortNumber(session.min_port).value_or(0),
          .max_port = PortNumber(session.max_port).value_or(0),
          .max_range = PortNumber(session.max_range).value_or(0)};
}

QString LimitsHint(const RouterSession& session) {
  return HasLimits(session) ? QStringLiteral("(%1~%2)").arg(session.min_port, session.max_port)
                            : QStringLiteral("(1~65535)");
}

bool HasRuleForBoth(const RouterSession& session) {
  return session.supports_both.compare(QLatin1String("no"), Qt::CaseInsensitive) != 0;
}

bool MayBeTypedAsPort(const QString& text) {
  return std::ranges::all_of(
      text, [](QChar c) { return IsDigit(c) || c == QLatin1Char('.') || c == QLatin1Char('-'); });
}

bool MayBeTypedAsPorts(const QString& text) {
  QString ports = text;
  ports.replace(QStringLiteral(", "), QStringLiteral(","));
  return MayBeTypedAsPort(ports.remove(QLatin1Char(',')));
}

bool IsPortList(const QString& text) {
  return text.contains(QLatin1Char(',')) || text.indexOf(QLatin1Char('-')) > 0;
}

bool MayBeTypedAsAddress(const QString& text) {
  const QStringList parts = text.split(QLatin1Char('.'));
  return parts.size() <= kMaxDots + 1 && std::ranges::all_of(parts, MayBePart);
}

bool IsWholeAddress(const QString& text) {
  const QStringList parts = text.split(QLatin1Char('.'));
  return parts.size() == kMaxDots + 1 && std::ranges::all_of(parts, [](const QString& part) {
           return !part.isEmpty() && MayBePart(part);
         });
}

QString SettledPort(const QString& typed, const PortLimits& limits) {
  static const QRegularExpression whole_number(QStringLiteral("^\\s*([+-]?)[0-9]+\\s*$"));
  const QRegularExpressionMatch match = whole_number.match(typed);
  if (!match.hasMatch()) {
    return typed;
  }
  const bool is_negative = match.captured(1) == QLatin1Char('-');
  // A number of more than 32 bits is beyond both limits.
  const int port = PortNumber(typed).value_or(is_negative ? std::numeric_limits<int>::min()
                                                          : std::numeric_limits<int>::max());
  if (port < limits.min_port) {
    return QString::number(limits.min_port);
  }
  return QString::number(std::min(port, limits.max_port));
}

}  // namespace quayline
