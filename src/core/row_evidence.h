// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

#include "core/page_rows.h"

namespace quayline {

// What the headings of a table call a column.
enum class ColumnRole {
  kNone,
  kPort,
  kStartPort,
  kEndPort,
  kInnerPort,  // of the computer; only counts where no other column has ports
  kAddress,
  kProtocol,
  kName,
  kEnabled,
  kIgnored,  // numbers of rows, sizes, times
};

ColumnRole RoleOf(const QString& heading);

// Whether the headings are those of a table of rules.
bool AreHeadingsOfRules(const QStringList& headings);

struct SeenPorts {
  int start = 0;
  int end = 0;
  bool is_sure = false;  // a range, or below a heading that says "port"

  bool operator==(const SeenPorts&) const = default;
};

// What a row of a page says of a rule.
struct RowEvidence {
  QList<SeenPorts> ports;
  QStringList addresses;  // whole ones
  QList<int> last_parts;  // numbers that stand for an address
  QStringList hosts;      // names below a heading that says "address", folded by FoldName()
  bool tcp = false;
  bool udp = false;
  bool is_disabled = false;
  QStringList names;  // texts that may be a name, folded by FoldName()
  // The ports are there as the name of a service, or as something else that is no number.
  bool has_unread_ports = false;
  // Another kind of table: port triggering, a filter of the firewall, boxes for a new rule.
  bool is_other = false;

  bool HasProtocol() const { return tcp || udp; }
  bool HasAddress() const { return !addresses.isEmpty() || !last_parts.isEmpty(); }
  bool HasSurePorts() const;
  // Whether a number beside those of `start` and `end` may be a port as well, where none is sure.
  bool HasOtherNumbers(int start, int end) const;
  // Whether the row can be a rule at all.
  bool IsRule() const;
};

// Reads the rows of one page. The headings of a table are looked at once, not for each row.
class RowReader final {
 public:
  RowEvidence Read(const PageRow& row);

 private:
  ColumnRole KnownRoleOf(const QString& heading);

  QHash<QString, ColumnRole> roles_;
};

// Letters and digits alone, in small letters.
QString FoldName(const QString& text);

}  // namespace quayline
