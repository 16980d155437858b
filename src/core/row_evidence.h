// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include "core/cell_text.h"
#include "core/column_role.h"
#include "core/page_rows.h"

namespace quayline {

// What a row of a page says of a rule.
struct RowEvidence {
  QList<SeenPorts> ports;
  // Of the computer, where the page tells them from the router's: below a heading, after an arrow,
  // or after an address. Where it shows no others, they are `ports`.
  QList<SeenPorts> inner_ports;
  QStringList addresses;  // whole ones
  QList<int> last_parts;  // numbers that stand for an address
  QStringList hosts;      // names below a heading that says "address", folded by FoldName()
  SeenProtocols protocols;
  bool is_disabled = false;
  QStringList names;  // texts that may be a name, folded by FoldName()
  // The ports are there as the name of a service, or as something else that is no number.
  bool has_unread_ports = false;
  // Another kind of table: port triggering, a filter of the firewall, boxes for a new rule.
  bool is_other = false;

  bool HasProtocol() const { return protocols.HasAny(); }
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
  // What one row says, while its cells are read.
  class Row;

  ColumnRole KnownRoleOf(const QString& heading);

  QHash<QString, ColumnRole> roles_;
};

}  // namespace quayline
