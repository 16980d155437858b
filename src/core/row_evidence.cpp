// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/row_evidence.h"

#include <QRegularExpression>

#include <algorithm>

namespace quayline {

namespace {

constexpr int kMaxPort = 65535;
// A smaller number beside others may be that of the row.
constexpr int kLeastPort = 20;
constexpr int kMaxAddressPart = 255;
// A page may hold anything: of longer cells only the beginning is looked at.
constexpr qsizetype kMaxCell = 300;

QRegularExpression Words(const char* pattern) {
  return QRegularExpression(QString::fromUtf8(pattern), QRegularExpression::CaseInsensitiveOption);
}

bool Has(const QString& text, const QRegularExpression& pattern) {
  return pattern.match(text).hasMatch();
}

// "TCP", "UDP", or the texts that stand for both.
void ReadProtocol(const QString& text, bool has_role, RowEvidence& evidence) {
  static const QRegularExpression tcp = Words("(?<![a-z])tcp(?![a-z])");
  static const QRegularExpression udp = Words("(?<![a-z])(?:tcp)?udp(?![a-z])");
  static const QRegularExpression joined = Words("(?<![a-z])tcpudp(?![a-z])");
  static const QRegularExpression both =
      Words("^\\W*(?:both|all|any|tcpudp|beide|alle|les deux|tous|ambos|todos|全部|所有)\\W*$");
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
      evidence.addresses.append(found);
    }
  }
  text.replace(colons, QStringLiteral(" "));
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

// What follows an arrow is the computer's.
QString BeforeArrow(const QString& text) {
  static const QRegularExpression arrow(
      QStringLiteral("\\d\\s*(->|=>|-->|\\x{2192}|\\x{21D2}|\\x{00BB}|>)"));
  const auto found = arrow.match(text);
  return found.hasMatch() ? text.left(found.capturedStart(1)) : text;
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
void TakePortsOfAddress(QString& text, RowEvidence& evidence) {
  static const QRegularExpression ports(
      QStringLiteral("(?:^|[\\s>]):\\s*(\\d{1,5}(?:[-:]\\d{1,5})?)(?![\\w.:-])"));
  const QRegularExpressionMatch match = ports.match(text);
  if (match.hasMatch()) {
    TakePorts(match.captured(1), true, evidence);
    text.remove(match.capturedStart(), match.capturedLength());
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

bool IsOffWord(const QString& text, bool has_role) {
  static const QRegularExpression off = Words(
      "^\\W*(?:disabled?|off|inactive|deactivated|not active|deaktiviert|inaktiv|nicht aktiv|"
      "d.sactiv.e?|inacti[fv]e?|desactivad[oa]|inactiv[oa]|deshabilitad[oa]|禁用|关闭|停用|"
      "未启用)\\W*$");
  static const QRegularExpression no = Words("^\\W*(?:no|0|false|n|nein|aus|non|否)\\W*$");
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

bool HasLetters(const QString& text) {
  static const QRegularExpression letter(QStringLiteral("\\p{L}"));
  return Has(text, letter);
}

// A name of a computer, where the address should be; not the words for any computer.
void AddHost(const QString& text, RowEvidence& evidence) {
  static const QRegularExpression any = Words(
      "^\\W*(?:any|all|none|everyone|everybody|alle|jeder|tous|todos|enabled?|disabled?)\\W*$");
  if (HasLetters(text) && !Has(text, any)) {
    evidence.hosts.append(FoldName(text));
  }
}

// "HTTP" instead of 80.
bool IsServiceName(const QString& text) {
  static const QRegularExpression service = Words(
      "^\\W*(?:https?|ftps?|sftp|ssh|telnet|smtp|pop3|imap|dns|rdp|vnc|sip|snmp|ntp|irc)(?: "
      "server)?"
      "\\W*$");
  return Has(text, service);
}

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
    case ColumnRole::kIgnored:
    case ColumnRole::kNone:
      break;
  }
  if (is_value) {
    cell = {.heading = found.captured(1), .text = value, .checked = cell.checked};
  }
}

// A port that opens others while it is used.
bool IsOfTriggers(const QString& heading) {
  static const QRegularExpression trigger = Words("trigger|ausl.s|d.clench|触发");
  return Has(heading, trigger);
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
  // English, German, French, Spanish, Italian, Dutch, Chinese, Japanese. Words of a language have
  // no separator in Chinese, so there is none in the patterns.
  static const struct {
    QRegularExpression words;
    ColumnRole role;
  } rows[] = {
      {Words("^\\W*(?:#|no\\.?|nr\\.?|n°|id|index|row|select|delete|remove|edit|action|priority|"
             "l.schen|bearbeiten|aktion|auswahl|supprimer|modifier|eliminar|borrar|editar|acci.n|"
             "序号|编号|操作|删除|编辑|选择)\\W*$"),
       ColumnRole::kIgnored},
      {Words("schedule|time|lease|metric|mask|interface|mac\\b|zeitplan|horaire|horario|时间"),
       ColumnRole::kIgnored},
      {Words("(?:internal|private|inner|local|\\blan|target|dest|forward\\w* to|intern|lokal|ziel|"
             "interne|interno|内部|内网|本地).*(?:port|puerto|poort|端口|埠|ポート)|"
             "(?:port|puerto|poort).*(?:internal|private|local|\\blan|target|intern|lokal|ziel|"
             "dest)"),
       ColumnRole::kInnerPort},
      {Words("(?:start|begin|from|first|low|anfang|von|d.but|inici|desde|起始|开始)"
             ".*(?:port|puerto|poort|端口)|(?:port|puerto|poort).*(?:start|begin|from|first|anfang|"
             "von|d.but|inici|desde)|^\\W*(?:start|from|von|de|desde)\\W*$"),
       ColumnRole::kStartPort},
      {Words("(?:end|last|high|stop|\\bto|bis|\\bfin|hasta|结束|终止).*(?:port|puerto|poort|端口)|"
             "(?:port|puerto|poort).*(?:\\bend|last|stop|bis\\b|ende|\\bfin|hasta)|"
             "^\\W*(?:end|to|until|bis|hasta)\\W*$"),
       ColumnRole::kEndPort},
      {Words("port|range|puerto|\\bporta\\b|poort|端口|埠|ポート"), ColumnRole::kPort},
      {Words("proto|traffic|协议|プロトコル"), ColumnRole::kProtocol},
      {Words("enabl|activ|status|state|^\\W*(?:on|use|en)\\W*$|aktiv|^\\W*tat\\W*$|estado|habilit|"
             "启用|状态|"
             "使能|有効"),
       ColumnRole::kEnabled},
      {Words("\\bip\\b|ip.?ad|address|server|host|computer|device|client|target|destination|"
             "forward\\w* "
             "to|adresse|ger(?:ä|ae)t|rechner|ziel|appareil|ordinateur|serveur|direcci.n|equipo|"
             "servidor|destino|地址|服务器|主机|设备|アドレス"),
       ColumnRole::kAddress},
      {Words("name|appl|descr|service|comment|rule|remark|label|bezeichnung|beschreibung|dienst|"
             "regel|"
             "\\bnom\\b|r.gle|nombre|servicio|regla|名称|描述|服务|规则|备注|名前"),
       ColumnRole::kName},
      {Words("^\\W*typ[eo]?\\W*$|^类型$"), ColumnRole::kProtocol},
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
    if (IsOfTriggers(heading)) {
      return false;
    }
    const ColumnRole role = RoleOf(heading);
    has_port = has_port || role == ColumnRole::kPort || role == ColumnRole::kStartPort ||
               role == ColumnRole::kInnerPort;
    has_more = has_more || role == ColumnRole::kAddress || role == ColumnRole::kProtocol;
  }
  return has_port && has_more;
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
  bool has_unread = false;
  SplitRange split;
  evidence.is_other = row.is_form || IsOfAnotherTable(row);
  for (PageCell cell : row.cells) {
    SplitLabel(cell);
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
    if (evidence.addresses.size() > addresses) {
      TakePortsOfAddress(text, inner);
    }
    text = BeforeArrow(text);
    const qsizetype ports = evidence.ports.size() + inner.ports.size();
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
        } else if (evidence.addresses.size() == addresses) {
          AddHost(text, evidence);
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
    const bool is_port_column = role == ColumnRole::kPort || role == ColumnRole::kStartPort;
    const bool has_none = ports == evidence.ports.size() + inner.ports.size();
    has_unread = has_unread ||
                 (has_none && (is_port_column ? HasLetters(text) && !split.HasAny()
                                              : role != ColumnRole::kName && IsServiceName(text)));
  }
  split.AddTo(evidence);
  const bool has_outer = std::ranges::any_of(evidence.ports, [](const SeenPorts& seen) {
    return seen.is_sure || seen.start >= kLeastPort;
  });
  if (!has_outer) {
    evidence.ports.append(inner.ports);
  }
  const bool has_number = has_outer || !inner.ports.isEmpty();
  // The empty boxes of a template have the words between them.
  const bool may_be_rule = evidence.HasAddress() || !evidence.hosts.isEmpty();
  evidence.has_unread_ports = has_unread && !has_number && may_be_rule && !evidence.is_other;
  return evidence;
}

}  // namespace quayline
