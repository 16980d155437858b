// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace quayline::bench {

// Who was at work.
enum class Lane { kScript, kBrowser, kPage };

struct Span {
  Lane lane = Lane::kScript;
  QString what;
  qint64 begin = 0;  // microseconds
  qint64 end = 0;
};

// What happened during one entry of a traced job.
struct EntryTrace {
  qint64 begin = 0;
  qint64 end = 0;
  QList<Span> spans;

  qint64 Length() const { return end - begin; }
};

// The entries of a trace, whose lines are "<microseconds> <what>"; in no particular order, since a
// page reports its own times later.
QList<EntryTrace> ReadTrace(const QStringList& events);

// The entry that took the median time. There is one.
const EntryTrace& MedianEntry(QList<EntryTrace>& entries);

// An entry as a picture: time from left to right, a row for each lane.
QByteArray TimelineSvg(const EntryTrace& entry);

}  // namespace quayline::bench
