// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/cell_text.h"

#include <algorithm>

namespace quayline {

QRegularExpression Words(const char* pattern) {
  return QRegularExpression(QString::fromUtf8(pattern), QRegularExpression::CaseInsensitiveOption);
}

bool Has(const QString& text, const QRegularExpression& pattern) {
  return pattern.match(text).hasMatch();
}

bool HasLetters(const QString& text) {
  static const QRegularExpression letter(QStringLiteral("\\p{L}"));
  return Has(text, letter);
}

QString FoldName(const QString& text) {
  QString folded;
  for (const QChar letter : text) {
    if (letter.isLetterOrNumber()) {
      folded += letter.toCaseFolded();
    }
  }
  return folded;
}

std::optional<int> NumberOf(const QString& text) {
  bool is_number = false;
  const int number = text.trimmed().toInt(&is_number);
  return is_number ? std::optional(number) : std::nullopt;
}

SeenProtocols ProtocolsIn(const QString& text, bool has_role) {
  static const QRegularExpression tcp = Words("(?<![a-z])tcp(?![a-z])");
  static const QRegularExpression udp = Words("(?<![a-z])(?:tcp)?udp(?![a-z])");
  static const QRegularExpression joined = Words("(?<![a-z])tcpudp(?![a-z])");
  static const QRegularExpression both =
      Words("^\\W*(?:both|all|any|tcpudp|beide|alle|les deux|tous|ambos|todos|全部|所有)\\W*$");
  const bool is_both = has_role && Has(text, both);
  const QString number = text.trimmed();
  return {.tcp = is_both || Has(text, tcp) || Has(text, joined) ||
                 (has_role && number == QLatin1String("6")),
          .udp = is_both || Has(text, udp) || (has_role && number == QLatin1String("17"))};
}

QStringList TakeAddresses(QString& text) {
  QStringList addresses;
  static const QRegularExpression colons(QStringLiteral(
      "\\[?(?<![\\w:])(?:[0-9a-fA-F]{0,4}:){2,7}[0-9a-fA-F]{0,4}(?![\\w:])\\]?(?:/\\d+)?"));
  static const QRegularExpression address(QStringLiteral(
      "(?<![\\d.])(\\d{1,3}\\s?\\.\\s?\\d{1,3}\\s?\\.\\s?\\d{1,3}\\s?\\.\\s*\\d{1,3})(?![\\d.])"
      "(?:/\\d{1,2})?"));
  // Also hardware addresses and times, which are no ports either.
  auto with_colons = colons.globalMatch(text);
  while (with_colons.hasNext()) {
    const QString found = with_colons.next().captured();
    if (found.contains(QLatin1String("::")) || found.count(QLatin1Char(':')) == 7) {
      addresses.append(found);
    }
  }
  text.replace(colons, QStringLiteral(" "));
  auto match = address.globalMatch(text);
  while (match.hasNext()) {
    QString found = match.next().captured(1);
    found.remove(QLatin1Char(' '));
    // Addresses that stand for "from anywhere", and masks, are not the computer's.
    if (!found.startsWith(QLatin1String("0.")) && !found.startsWith(QLatin1String("255."))) {
      addresses.append(found);
    }
  }
  text.replace(address, QStringLiteral(" "));
  return addresses;
}

QList<SeenPorts> PortsIn(const QString& text, bool is_port_column) {
  QList<SeenPorts> ports;
  static const QRegularExpression range(
      QStringLiteral("(?<![\\w.:~-])(\\d{1,5})\\s*(?:-|:|~|\\x{2013}|\\x{2026}|\\.\\.+|to)\\s*(\\d{"
                     "1,5})(?![\\w.:~-])"));
  static const QRegularExpression number(QStringLiteral("(?<![\\w.])(\\d{1,5})(?![\\w.])"));
  auto match = range.globalMatch(text);
  QString rest = text;
  while (match.hasNext()) {
    const auto found = match.next();
    const int start = found.captured(1).toInt();
    const int end = found.captured(2).toInt();
    if (start > 0 && start <= end && end <= kMaxPort) {
      ports.append({.start = start, .end = end, .is_sure = true});
    }
  }
  rest.replace(range, QStringLiteral(" "));
  match = number.globalMatch(rest);
  while (match.hasNext()) {
    const int port = match.next().captured(1).toInt();
    if (port > 0 && port <= kMaxPort) {
      ports.append({.start = port, .end = port, .is_sure = is_port_column});
    }
  }
  return ports;
}

QList<SeenPorts> TakePortsOfAddress(QString& text) {
  static const QRegularExpression ports(
      QStringLiteral("(?:^|[\\s>]):\\s*(\\d{1,5}(?:[-:]\\d{1,5})?)(?![\\w.:-])"));
  const QRegularExpressionMatch match = ports.match(text);
  if (!match.hasMatch()) {
    return {};
  }
  text.remove(match.capturedStart(), match.capturedLength());
  return PortsIn(match.captured(1), true);
}

QString TakeAfterArrow(QString& text) {
  static const QRegularExpression arrow(
      QStringLiteral("\\d\\s*(->|=>|-->|\\x{2192}|\\x{21D2}|\\x{00BB}|>)"));
  const QRegularExpressionMatch found = arrow.match(text);
  if (!found.hasMatch()) {
    return {};
  }
  const QString after = text.mid(found.capturedEnd(1));
  text.truncate(found.capturedStart(1));
  return after;
}

std::optional<int> HalfOfRange(const QString& text) {
  static const QRegularExpression half(
      QStringLiteral("^\\W*(?:\\p{L}+\\W+)?(\\d{1,5})(?:\\W+\\p{L}+)?\\W*$"),
      QRegularExpression::UseUnicodePropertiesOption);
  const QRegularExpressionMatch match = half.match(text);
  return match.hasMatch() ? NumberOf(match.captured(1)) : std::nullopt;
}

bool IsOffWord(const QString& text, bool has_role) {
  static const QRegularExpression off = Words(
      "^\\W*(?:disabled?|off|inactive|deactivated|not active|deaktiviert|inaktiv|nicht aktiv|"
      "d.sactiv.e?|inacti[fv]e?|desactivad[oa]|inactiv[oa]|deshabilitad[oa]|禁用|关闭|停用|"
      "未启用)\\W*$");
  static const QRegularExpression no = Words("^\\W*(?:no|0|false|n|nein|aus|non|否)\\W*$");
  return Has(text, off) || (has_role && Has(text, no));
}

bool IsServiceName(const QString& text) {
  static const QRegularExpression service = Words(
      "^\\W*(?:https?|ftps?|sftp|ssh|telnet|smtp|pop3|imap|dns|rdp|vnc|sip|snmp|ntp|irc)(?: "
      "server)?"
      "\\W*$");
  return Has(text, service);
}

QStringList PossibleNames(const QString& text) {
  static const QRegularExpression other = Words(
      "^(?:tcp|udp|both|all|any|yes|no|on|off|enabled?|disabled?|active|inactive|edit|delete|"
      "remove|modify|add|lan|wan|to|from|port|ports)$");
  static const QRegularExpression divider(QStringLiteral("[\\s,;|/>()\\[\\]]+"));
  constexpr qsizetype kMostWords = 4;
  QStringList names;
  QStringList words;
  for (const QString& word : text.split(divider, Qt::SkipEmptyParts)) {
    if (!Has(word, other)) {
      words.append(FoldName(word));
    }
  }
  for (qsizetype first = 0; first < words.size(); ++first) {
    QString name;
    for (qsizetype i = first; i < std::min(words.size(), first + kMostWords); ++i) {
      name += words.at(i);
      if (HasLetters(name)) {
        names.append(name);
      }
    }
  }
  return names;
}

QString HostIn(const QString& text) {
  static const QRegularExpression any = Words(
      "^\\W*(?:any|all|none|everyone|everybody|alle|jeder|tous|todos|enabled?|disabled?)\\W*$");
  return HasLetters(text) && !Has(text, any) ? FoldName(text) : QString();
}

}  // namespace quayline
