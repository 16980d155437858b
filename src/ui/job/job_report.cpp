// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_report.h"

#include <QCoreApplication>
#include <QSysInfo>

#include "core/private_text.h"

namespace quayline {

namespace {

// A part with a heading; line ends become those of the file.
QString Part(const QString& heading, QString text) {
  text.remove(QLatin1Char('\r'));
  return QStringLiteral("\n%1\n%2\n%3\n")
      .arg(heading, QString(heading.size(), QLatin1Char('-')), text.trimmed());
}

QString EntryLines(const JobReport::Entry& reported) {
  const PortEntry& entry = reported.entry;
  QString lines = QStringLiteral("%1: %2 %3-%4 to %5\n    %6\n")
                      .arg(entry.app_name, entry.protocol, entry.start_port, entry.end_port,
                           entry.forwarded_to, reported.state);
  if (!reported.reason.isEmpty()) {
    lines += QStringLiteral("    %1\n").arg(reported.reason);
  }
  return lines;
}

}  // namespace

// In English, whatever the language of the windows: those who help are not the user.
QString ReportText(const JobReport& report, const QList<Login>& logins) {
  QString text = QStringLiteral("Report of a Quayline job\n\n");
  text += QStringLiteral("Quayline %1, Qt %2, %3, %4\n")
              .arg(QCoreApplication::applicationVersion(), QString::fromLatin1(qVersion()),
                   report.engine, QSysInfo::prettyProductName());
  text += QStringLiteral("Router: %1, %2\n").arg(report.router_name, report.http_type);
  text += QStringLiteral("Outcome: %1\n").arg(report.outcome);
  QString entries;
  for (const JobReport::Entry& entry : report.entries) {
    entries += EntryLines(entry);
  }
  text += Part(QStringLiteral("Entries"), entries);
  text += Part(QStringLiteral("Log"), report.log);
  text += Part(QStringLiteral("Browser status"), report.states);
  text += Part(QStringLiteral("Page errors"), report.errors);
  return WithoutLogins(WithoutOutsideAddresses(WithoutHost(text, report.router_host)), logins);
}

}  // namespace quayline
