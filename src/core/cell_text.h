// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>

// What the texts of a page's cells say: ports, addresses, protocols, words.
namespace quayline {

inline constexpr int kMaxPort = 65535;
// A page may contain anything: of longer cells only the beginning is looked at.
inline constexpr qsizetype kMaxCell = 300;

struct SeenPorts {
  int start = 0;
  int end = 0;
  bool is_sure = false;  // a range, or below a heading that says "port"

  bool operator==(const SeenPorts&) const = default;
};

struct SeenProtocols {
  bool tcp = false;
  bool udp = false;

  bool HasAny() const { return tcp || udp; }
  void Add(const SeenProtocols& other) {
    tcp = tcp || other.tcp;
    udp = udp || other.udp;
  }
};

// A pattern of words, in UTF-8, in any case of letters.
QRegularExpression Words(const char* pattern);
bool Has(const QString& text, const QRegularExpression& pattern);
bool HasLetters(const QString& text);
// Letters and digits alone, in small letters.
QString FoldName(const QString& text);
std::optional<int> NumberOf(const QString& text);

// "TCP", "UDP", or the texts for both; where the heading says "protocol", also numbers and "all".
SeenProtocols ProtocolsIn(const QString& text, bool has_role);
// Takes the addresses out of `text`, also one whose last part is in a box of its own.
QStringList TakeAddresses(QString& text);
// Ports and ranges. A single number is sure to be a port in a column of ports.
QList<SeenPorts> PortsIn(const QString& text, bool is_port_column);
// The ports after an address, as in "192.168.1.5: 80"; the address has been taken out of `text`.
QList<SeenPorts> TakePortsOfAddress(QString& text);
// Takes what follows an arrow out of `text`: it is the computer's.
QString TakeAfterArrow(QString& text);
// The number of one half of a range: "80", or "80 to" where the word between the boxes is in the
// cell of the first one.
std::optional<int> HalfOfRange(const QString& text);
// A word for a rule that is switched off; where the heading says "enabled", also "no" and 0.
bool IsOffWord(const QString& text, bool has_role);
// "HTTP" instead of 80.
bool IsServiceName(const QString& text);
// The texts in a cell without a heading that may be a name, folded. An item of a list has the whole
// rule in one text, and the name may be any of its words, or several.
QStringList PossibleNames(const QString& text);
// A name of a computer, folded; empty for the words for any computer.
QString HostIn(const QString& text);

}  // namespace quayline
