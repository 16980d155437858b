// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>

#include "core/port_entry.h"
#include "core/records.h"
#include "demo/demo_router.h"

namespace quayline::bench {

// The job that is measured: `count` entries, no two of which clash.
QList<PortEntry> JobEntries(int count);

// The values of the page's six fields for an entry.
struct FieldValues {
  QString name;
  QString start;
  QString end;
  QString protocol;  // as the page's select shows it
  QString address;
};
FieldValues FieldsOf(const PortEntry& entry);

// What is wrong with the router's table after the job; empty if every entry is in it once.
QString WhatIsMissing(const QList<PortEntry>& entries, const demo::RouterState& state);

// The router of the benchmark, as its text file has it. A sentence when it cannot be read.
std::expected<RouterRecord, QString> ReadBenchRouter(const QString& file_name);

// Writes a program's folder whose databases hold these routers. A sentence when it cannot.
std::expected<void, QString> WriteProgramFolder(const QList<RouterRecord>& routers,
                                                const QString& folder);

}  // namespace quayline::bench
