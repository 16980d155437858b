// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/records.h"
#include "core/text_form.h"

namespace quayline::dbtool {

// Tables with one record a line, cells divided by ";". Blank lines and lines that begin with "#"
// are skipped.

template <typename Record>
struct Sourced {
  Record record;
  QString file;
  int line = 1;
  QString origin = {};  // who says so: the last cell of a line of ports, not part of the record
};

using PortsSource = Sourced<AppPortRecord>;
using CustomSource = Sourced<CustomPortRecord>;

// id; name; short name; TCP ports; UDP ports; ports on both; source. Ports are a number or a range,
// with commas between them. A line that is no record is a problem and left out.
QList<PortsSource> ReadPorts(const QList<TextLine>& lines, const QString& file, Problems& problems);

// id; name; protocol; start port; end port.
QList<CustomSource> ReadCustom(const QList<TextLine>& lines, const QString& file,
                               Problems& problems);

// The tables with their columns aligned, under a line that names them. The source of the ports is
// not stored in a database, so it is an empty cell.
QString FormatPorts(const QList<AppPortRecord>& records);
QString FormatCustom(const QList<CustomPortRecord>& records);

}  // namespace quayline::dbtool
