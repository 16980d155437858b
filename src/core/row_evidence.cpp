// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/row_evidence.h"

#include <algorithm>

namespace quayline {

namespace {

// A smaller number beside others may be that of the row.
constexpr int kLeastPort = 20;
constexpr int kMaxAddressPart = 255;

// Two cells with the start and the end.
class SplitRange final {
 public:
  void Take(ColumnRole role, const QString& text) {
    const std::optional<int> port = HalfOfRange(text);
    if (!port || *port > kMaxPort) {
      return;
    }
    (role == ColumnRole::kStartPort ? starts_ : ends_).append(*port);
  }

  bool HasAny() const { return !starts_.isEmpty() || !ends_.isEmpty(); }

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

// The value below a label, where a page writes both in one text: "Port: 80".
void SplitLabel(PageCell& cell) {
  static const QRegularExpression label(
      QStringLiteral("^\\s*([^:\\d]{2,40}?)\\s*[:\\x{FF1A}]\\s*(\\S.*)$"));
  static const QRegularExpression ports(
      QStringLiteral("^\\d{1,5}(?:\\s*(?:-|:|~|\\x{2013}|to)\\s*\\d{1,5})?(?:\\D.{0,12})?$"));
  static const QRegularExpression address(QStringLiteral("^(?!\\d+$)[\\w.:-]+(?:\\s*\\(.*\\))?$"));
  const bool has_colon = cell.text.contains(QLatin1Char(':')) || cell.text.contains(QChar(0xFF1A));
  if (!cell.heading.isEmpty() || !has_colon) {
    return;
  }
  const auto found = label.match(cell.text);
  if (!found.hasMatch()) {
    return;
  }
  const QString value = found.captured(2).trimmed();
  bool is_value = false;
  switch (RoleOf(found.captured(1))) {
    case ColumnRole::kPort:
    case ColumnRole::kStartPort:
    case ColumnRole::kEndPort:
    case ColumnRole::kInnerPort:
      is_value = Has(value, ports);
      break;
    case ColumnRole::kAddress:
      is_value = Has(value, address);
      break;
    case ColumnRole::kProtocol:
    case ColumnRole::kEnabled:
    case ColumnRole::kName:
      // The item of a list may begin with the name of the rule.
      is_value = !value.contains(QRegularExpression(QStringLiteral("\\d")));
      break;
    case ColumnRole::kOutside:
    case ColumnRole::kIgnored:
    case ColumnRole::kNone:
      break;
  }
  if (is_value) {
    cell = {.heading = found.captured(1), .text = value, .checked = cell.checked};
  }
}

// Tables that look like rules and open no port.
bool IsOfAnotherTable(const PageRow& row) {
  static const QRegularExpression other_title = Words(
      "trigger|firewall|filter|lease|\\blog\\b|parental|access control|block|ausl.s|d.clench|"
      "触发|过滤");
  static const QRegularExpression forward_title =
      Words("forward|virtual|\\bnat\\b|redirect|weiterleitung|freigabe|redirig|reenv|转发|虚拟");
  static const QRegularExpression action = Words("action|policy|target|regel|动作");
  static const QRegularExpression verdict =
      Words("^\\W*(?:allow|deny|denied|accept|drop|reject|block|permit)(?:ed)?\\W*$");
  return (Has(row.title, other_title) && !Has(row.title, forward_title)) ||
         std::ranges::any_of(row.cells, [](const PageCell& cell) {
           return IsOfTriggers(cell.heading) ||
                  (Has(cell.heading, action) && Has(cell.text, verdict));
         });
}

}  // namespace

// Protocols in a name count where no other cell has any: "Voice TCP/UDP".
class RowReader::Row final {
 public:
  explicit Row(const PageRow& row) { evidence_.is_other = row.is_form || IsOfAnotherTable(row); }

  void ReadBox(const PageCell& cell, ColumnRole role);
  void ReadText(const PageCell& cell, ColumnRole role);
  // Of a column that says nothing of a rule by its heading ("Action").
  void ReadIgnored(QString text) { spare_addresses_.append(TakeAddresses(text)); }
  RowEvidence Take();

 private:
  void ReadProtocols(const PageCell& cell, const QString& text, ColumnRole role);
  void ReadNames(const QString& text, ColumnRole role);
  void ReadAddress(const QString& text, bool has_whole_one);
  // The ports of the router, and those of the computer after an arrow.
  void ReadPorts(QString text, ColumnRole role);

  RowEvidence evidence_;
  QList<SeenPorts> inner_;
  SeenProtocols of_name_;
  SplitRange split_;
  QStringList spare_addresses_;  // count where no other column has one
  bool has_unread_ = false;
};

void RowReader::Row::ReadBox(const PageCell& cell, ColumnRole role) {
  static const QRegularExpression protocols = Words("(?<![a-z])(?:tcp|udp|both)");
  if (role == ColumnRole::kProtocol || Has(cell.heading, protocols)) {
    if (*cell.checked) {
      evidence_.protocols.Add(ProtocolsIn(cell.heading, true));
    }
  } else if (role == ColumnRole::kEnabled) {
    evidence_.is_disabled = evidence_.is_disabled || !*cell.checked;
  }
}

void RowReader::Row::ReadText(const PageCell& cell, ColumnRole role) {
  QString text = cell.text.left(kMaxCell);
  if (role == ColumnRole::kEnabled || cell.heading.isEmpty()) {
    const bool is_off = IsOffWord(text, role == ColumnRole::kEnabled);
    evidence_.is_disabled = evidence_.is_disabled || is_off;
  }
  ReadProtocols(cell, text, role);
  ReadNames(text, role);
  const QStringList addresses = TakeAddresses(text);
  evidence_.addresses.append(addresses);
  const qsizetype ports = evidence_.ports.size() + inner_.size();
  if (!addresses.isEmpty()) {
    inner_.append(TakePortsOfAddress(text));
  }
  if (role == ColumnRole::kAddress) {
    ReadAddress(text, !addresses.isEmpty());
  }
  ReadPorts(text, role);
  const bool is_port_column = role == ColumnRole::kPort || role == ColumnRole::kStartPort;
  const bool has_none = ports == evidence_.ports.size() + inner_.size();
  has_unread_ = has_unread_ ||
                (has_none && (is_port_column ? HasLetters(text) && !split_.HasAny()
                                             : role != ColumnRole::kName && IsServiceName(text)));
}

void RowReader::Row::ReadProtocols(const PageCell& cell, const QString& text, ColumnRole role) {
  // Boxes of a protocol without a port often have a nought: "UDP 0".
  static const QRegularExpression no_port = Words("^\\W*(?:tcp|udp)\\W+0(?:\\W+0)*\\W*$");
  if (Has(text, no_port)) {
    return;
  }
  const SeenProtocols seen = ProtocolsIn(text, role == ColumnRole::kProtocol);
  (role == ColumnRole::kName ? of_name_ : evidence_.protocols).Add(seen);
  // Some tables have a column of ports for each protocol.
  const bool is_port_column =
      role == ColumnRole::kPort || role == ColumnRole::kStartPort || role == ColumnRole::kEndPort;
  const SeenProtocols of_column = ProtocolsIn(cell.heading, false);
  if (is_port_column && of_column.tcp != of_column.udp && !PortsIn(text, true).isEmpty()) {
    evidence_.protocols.Add(of_column);
  }
}

void RowReader::Row::ReadNames(const QString& text, ColumnRole role) {
  if (role == ColumnRole::kName) {
    evidence_.names.append(FoldName(text));
  } else if (role == ColumnRole::kNone) {
    evidence_.names.append(PossibleNames(text));
  }
}

void RowReader::Row::ReadAddress(const QString& text, bool has_whole_one) {
  QString before_arrow = text;
  TakeAfterArrow(before_arrow);
  const std::optional<int> part = NumberOf(before_arrow);
  if (part && *part > 0 && *part <= kMaxAddressPart) {
    evidence_.last_parts.append(*part);
  } else if (const QString host = HostIn(before_arrow); !has_whole_one && !host.isEmpty()) {
    evidence_.hosts.append(host);
  }
}

void RowReader::Row::ReadPorts(QString text, ColumnRole role) {
  const QString after_arrow = TakeAfterArrow(text);
  switch (role) {
    case ColumnRole::kStartPort:
    case ColumnRole::kEndPort:
      if (HalfOfRange(text)) {
        split_.Take(role, text);
        break;
      }
      [[fallthrough]];
    case ColumnRole::kPort:
      evidence_.ports.append(PortsIn(text, true));
      evidence_.inner_ports.append(PortsIn(after_arrow, true));
      break;
    case ColumnRole::kInnerPort:
      inner_.append(PortsIn(text, true));
      break;
    case ColumnRole::kNone:
      evidence_.ports.append(PortsIn(text, false));
      break;
    case ColumnRole::kAddress:
    case ColumnRole::kOutside:
    case ColumnRole::kProtocol:
    case ColumnRole::kName:
    case ColumnRole::kEnabled:
    case ColumnRole::kIgnored:
      break;
  }
}

RowEvidence RowReader::Row::Take() {
  split_.AddTo(evidence_);
  if (!evidence_.HasAddress() && evidence_.hosts.isEmpty()) {
    evidence_.addresses = spare_addresses_;
  }
  if (!evidence_.HasProtocol()) {
    evidence_.protocols = of_name_;
  }
  const bool has_outer = std::ranges::any_of(evidence_.ports, [](const SeenPorts& seen) {
    return seen.is_sure || seen.start >= kLeastPort;
  });
  const bool has_number = has_outer || !inner_.isEmpty();
  (has_outer ? evidence_.inner_ports : evidence_.ports).append(inner_);
  // The empty boxes of a template have the words between them.
  const bool may_be_rule = evidence_.HasAddress() || !evidence_.hosts.isEmpty();
  evidence_.has_unread_ports = has_unread_ && !has_number && may_be_rule && !evidence_.is_other;
  return std::move(evidence_);
}

bool RowEvidence::HasOtherNumbers(int start, int end) const {
  return !HasSurePorts() && std::ranges::any_of(ports, [&](const SeenPorts& seen) {
    return seen.start >= kLeastPort && seen.start != start && seen.start != end;
  });
}

bool RowEvidence::IsRule() const {
  if (is_other) {
    return false;
  }
  return HasSurePorts() ? HasAddress() || HasProtocol() || !hosts.isEmpty()
                        : !ports.isEmpty() && HasAddress() && HasProtocol();
}

bool RowEvidence::HasSurePorts() const { return std::ranges::any_of(ports, &SeenPorts::is_sure); }

ColumnRole RowReader::KnownRoleOf(const QString& heading) {
  const auto known = roles_.constFind(heading);
  return known != roles_.constEnd() ? *known : *roles_.insert(heading, RoleOf(heading));
}

RowEvidence RowReader::Read(const PageRow& row) {
  Row read(row);
  for (PageCell cell : row.cells) {
    SplitLabel(cell);
    const ColumnRole role = KnownRoleOf(cell.heading);
    if (cell.checked) {
      read.ReadBox(cell, role);
    } else if (role == ColumnRole::kIgnored) {
      read.ReadIgnored(cell.text);
    } else if (role != ColumnRole::kOutside && !cell.text.trimmed().isEmpty()) {
      read.ReadText(cell, role);
    }
  }
  return read.Take();
}

}  // namespace quayline
