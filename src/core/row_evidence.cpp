// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/row_evidence.h"

#include <QRegularExpression>

#include <algorithm>

namespace quayline {

namespace {

constexpr int kMaxPort = 65535;
constexpr int kMaxAddressPart = 255;
// A page may hold anything: of longer cells only the beginning is looked at.
constexpr qsizetype kMaxCell = 300;

QRegularExpression Words(const char* pattern) {
  return QRegularExpression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption);
}

bool Has(const QString& text, const QRegularExpression& pattern) {
  return pattern.match(text).hasMatch();
}

// "TCP", "UDP", or the texts that stand for both.
void ReadProtocol(const QString& text, bool has_role, RowEvidence& evidence) {
  static const QRegularExpression tcp = Words("(?<![a-z])tcp(?![a-z])");
  static const QRegularExpression udp = Words("(?<![a-z])(?:tcp)?udp(?![a-z])");
  static const QRegularExpression joined = Words("(?<![a-z])tcpudp(?![a-z])");
  static const QRegularExpression both = Words("^\\W*(?:both|all|any|tcpudp)\\W*$");
  const bool is_both = has_role && Has(text, both);
  const QString number = text.trimmed();
  evidence.tcp = evidence.tcp || is_both || Has(text, tcp) || Has(text, joined) ||
                 (has_role && number == QLatin1String("6"));
  evidence.udp =
      evidence.udp || is_both || Has(text, udp) || (has_role && number == QLatin1String("17"));
}

// Some tables have a column of ports for each protocol.
void ReadProtocolOfColumn(const QString& heading, RowEvidence& evidence) {
  RowEvidence column;
  ReadProtocol(heading, false, column);
  if (column.tcp != column.udp) {
    evidence.tcp = evidence.tcp || column.tcp;
    evidence.udp = evidence.udp || column.udp;
  }
}

// Takes the addresses out of `text`, also one whose last part is in a box of its own.
void TakeAddresses(QString& text, RowEvidence& evidence) {
  static const QRegularExpression address(QStringLiteral(
      "(?<![\\d.])(\\d{1,3}\\s?\\.\\s?\\d{1,3}\\s?\\.\\s?\\d{1,3}\\s?\\.\\s*\\d{1,3})(?![\\d.])"));
  auto match = address.globalMatch(text);
  while (match.hasNext()) {
    QString found = match.next().captured(1);
    found.remove(QLatin1Char(' '));
    // Addresses that stand for "from anywhere", and masks, are not the computer's.
    if (!found.startsWith(QLatin1String("0.")) && !found.startsWith(QLatin1String("255."))) {
      evidence.addresses.append(found);
    }
  }
  text.replace(address, QStringLiteral(" "));
}

std::optional<int> WholeNumber(const QString& text) {
  bool is_number = false;
  const int number = text.trimmed().toInt(&is_number);
  return is_number ? std::optional(number) : std::nullopt;
}

// The number of one half of a range: "80", or "80 to" where the word between the boxes is in the
// cell of the first one.
std::optional<int> HalfOfRange(const QString& text) {
  static const QRegularExpression half(
      QStringLiteral("^\\W*(?:\\p{L}+\\W+)?(\\d{1,5})(?:\\W+\\p{L}+)?\\W*$"),
      QRegularExpression::UseUnicodePropertiesOption);
  const QRegularExpressionMatch match = half.match(text);
  return match.hasMatch() ? WholeNumber(match.captured(1)) : std::nullopt;
}

void TakePorts(const QString& text, bool is_port_column, RowEvidence& evidence) {
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
      evidence.ports.append({.start = start, .end = end, .is_sure = true});
    }
  }
  rest.replace(range, QStringLiteral(" "));
  match = number.globalMatch(rest);
  while (match.hasNext()) {
    const int port = match.next().captured(1).toInt();
    if (port > 0 && port <= kMaxPort) {
      evidence.ports.append({.start = port, .end = port, .is_sure = is_port_column});
    }
  }
}

// The ports after an address, as in "192.168.1.5: 80"; the address has been taken out of `text`.
void TakePortsOfAddress(const QString& text, RowEvidence& evidence) {
  static const QRegularExpression ports(
      QStringLiteral("(?:^|[\\s>]):\\s*(\\d{1,5}(?:[-:]\\d{1,5})?)(?![\\w.:-])"));
  const QRegularExpressionMatch match = ports.match(text);
  if (match.hasMatch()) {
    TakePorts(match.captured(1), true, evidence);
  }
}

// Two cells that hold the start and the end.
class SplitRange final {
 public:
  void Take(ColumnRole role, const QString& text) {
    const std::optional<int> port = HalfOfRange(text);
    if (!port || *port < 0 || *port > kMaxPort) {
      return;
    }
    (role == ColumnRole::kStartPort ? starts_ : ends_).append(*port);
  }

  void AddTo(RowEvidence& evidence) const {
    for (qsizetype i = 0; i < starts_.size(); ++i) {
      // An empty end, or 0, is a single port.
      const int end = ends_.value(i, 0) > 0 ? ends_.value(i) : starts_.at(i);
      if (starts_.at(i) > 0 && end >= starts_.at(i)) {
        evidence.ports.append({.start = starts_.at(i), .end = end, .is_sure = true});
      }
    }
  }

 private:
  QList<int> starts_;
  QList<int> ends_;
};

bool IsOffWord(const QString& text, bool has_role) {
  static const QRegularExpression off =
      Words("^\\W*(?:disabled?|off|inactive|deactivated|not active)\\W*$");
  static const QRegularExpression no = Words("^\\W*(?:no|0|false|n)\\W*$");
  return Has(text, off) || (has_role && Has(text, no));
}

// Words of a cell without a heading. An item of a list has the whole rule in one text, and the name
// may be any of its words, or several.
void AddPossibleNames(const QString& text, RowEvidence& evidence) {
  static const QRegularExpression other = Words(
      "^(?:tcp|udp|both|all|any|yes|no|on|off|enabled?|disabled?|active|inactive|edit|delete|"
      "remove|modify|add|lan|wan|to|from|port|ports)$");
  static const QRegularExpression divider(QStringLiteral("[\\s,;|/>()\\[\\]]+"));
  static const QRegularExpression letter(QStringLiteral("\\p{L}"));
  constexpr qsizetype kMostWords = 4;
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
      if (Has(name, letter)) {
        evidence.names.append(name);
      }
    }
  }
}

void ReadBox(const PageCell& cell, ColumnRole role, RowEvidence& evidence) {
  static const QRegularExpression protocols = Words("(?<![a-z])(?:tcp|udp|both)");
  if (role == ColumnRole::kProtocol || Has(cell.heading, protocols)) {
    if (*cell.checked) {
      ReadProtocol(cell.heading, true, evidence);
    }
  } else if (role == ColumnRole::kEnabled) {
    evidence.is_disabled = evidence.is_disabled || !*cell.checked;
  }
}

}  // namespace

ColumnRole RoleOf(const QString& heading) {
  static const struct {
    QRegularExpression words;
    ColumnRole role;
  } rows[] = {
      {Words(
           "^\\W*(?:#|no\\.?|nr\\.?|id|index|row|select|delete|remove|edit|action|priority)\\W*$"),
       ColumnRole::kIgnored},
      {Words("schedule|time|lease|metric|mask|interface|mac\\b"), ColumnRole::kIgnored},
      {Words("(?:internal|private|inner|local|\\blan|target|dest|forward\\w* to).*port|"
             "port.*(?:internal|private|local|\\blan|target)"),
       ColumnRole::kInnerPort},
      {Words("(?:start|begin|from|first|low).*port|port.*(?:start|begin|from|first)|^\\W*(?:start|"
             "from)\\W*$"),
       ColumnRole::kStartPort},
      {Words(
           "(?:end|last|high|stop|\\bto).*port|port.*(?:end|last|stop)|^\\W*(?:end|to|until)\\W*$"),
       ColumnRole::kEndPort},
      {Words("port|range"), ColumnRole::kPort},
      {Words("proto|traffic"), ColumnRole::kProtocol},
      {Words("enabl|activ|status|state|^\\W*(?:on|use|en)\\W*$"), ColumnRole::kEnabled},
      {Words("\\bip\\b|ip ?addr|address|server|host|computer|device|client|target|destination|"
             "forward\\w* to"),
       ColumnRole::kAddress},
      {Words("name|appl|descr|service|comment|rule|remark|label"), ColumnRole::kName},
      {Words("^\\W*type\\W*$"), ColumnRole::kProtocol},
  };
  const QString text = heading.left(kMaxCell);
  for (const auto& row : rows) {
    if (Has(text, row.words)) {
      return row.role;
    }
  }
  return ColumnRole::kNone;
}

bool AreHeadingsOfRules(const QStringList& headings) {
  bool has_port = false;
  bool has_more = false;
  for (const QString& heading : headings) {
    const ColumnRole role = RoleOf(heading);
    has_port = has_port || role == ColumnRole::kPort || role == ColumnRole::kStartPort ||
               role == ColumnRole::kInnerPort;
    has_more = has_more || role == ColumnRole::kAddress || role == ColumnRole::kProtocol;
  }
  return has_port && has_more;
}

bool RowEvidence::IsRule() const {
  return HasSurePorts() ? HasAddress() || HasProtocol()
                        : !ports.isEmpty() && HasAddress() && HasProtocol();
}

bool RowEvidence::HasSurePorts() const { return std::ranges::any_of(ports, &SeenPorts::is_sure); }

QString FoldName(const QString& text) {
  QString folded;
  for (const QChar letter : text) {
    if (letter.isLetterOrNumber()) {
      folded += letter.toCaseFolded();
    }
  }
  return folded;
}

ColumnRole RowReader::KnownRoleOf(const QString& heading) {
  const auto known = roles_.constFind(heading);
  return known != roles_.constEnd() ? *known : *roles_.insert(heading, RoleOf(heading));
}

RowEvidence RowReader::Read(const PageRow& row) {
  RowEvidence evidence;
  RowEvidence inner;
  SplitRange split;
  for (const PageCell& cell : row.cells) {
    const ColumnRole role = KnownRoleOf(cell.heading);
    if (cell.checked) {
      ReadBox(cell, role, evidence);
      continue;
    }
    QString text = cell.text.left(kMaxCell);
    if (role == ColumnRole::kIgnored || text.trimmed().isEmpty()) {
      continue;
    }
    evidence.is_disabled = evidence.is_disabled || IsOffWord(text, role == ColumnRole::kEnabled);
    ReadProtocol(text, role == ColumnRole::kProtocol, evidence);
    if (role == ColumnRole::kName) {
      evidence.names.append(FoldName(text));
    } else if (role == ColumnRole::kNone) {
      AddPossibleNames(text, evidence);
    }
    const qsizetype addresses = evidence.addresses.size();
    TakeAddresses(text, evidence);
    switch (role) {
      case ColumnRole::kStartPort:
      case ColumnRole::kEndPort:
        if (HalfOfRange(text)) {
          split.Take(role, text);
          break;
        }
        [[fallthrough]];
      case ColumnRole::kPort: {
        const qsizetype before = evidence.ports.size();
        TakePorts(text, true, evidence);
        if (evidence.ports.size() > before) {
          ReadProtocolOfColumn(cell.heading, evidence);
        }
        break;
      }
      case ColumnRole::kInnerPort:
        TakePorts(text, true, inner);
        break;
      case ColumnRole::kAddress:
        if (const auto part = WholeNumber(text); part && *part > 0 && *part <= kMaxAddressPart) {
          evidence.last_parts.append(*part);
        }
        if (evidence.addresses.size() > addresses) {
          TakePortsOfAddress(text, inner);
        }
        break;
      case ColumnRole::kNone:
        TakePorts(text, false, evidence);
        break;
      case ColumnRole::kProtocol:
      case ColumnRole::kName:
      case ColumnRole::kEnabled:
      case ColumnRole::kIgnored:
        break;
    }
  }
  split.AddTo(evidence);
  if (!evidence.HasSurePorts()) {
    evidence.ports.append(inner.ports);
  }
  return evidence;
}

}  // namespace quayline
