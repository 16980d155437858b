// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_report.h"

#include <QCoreApplication>
#include <QSysInfo>

#include "core/private_text.h"
#include "i18n/sentence.h"

namespace quayline {

namespace {

constexpr Message kHeading{"Report of a Quayline job"};
constexpr Message kRouterLine{"Router: %1, %2", "in a report: a name, and http:// or https://"};
constexpr Message kOutcomeLine{"Outcome: %1", "in a report"};
constexpr Message kEntryLine{"%1: %2 %3-%4 to %5", "a name, TCP, two ports, an address"};
constexpr Message kEntries{"Entries", "a heading of a report"};
constexpr Message kLog{"Log", "a heading of a report"};
constexpr Message kBrowserStatus{"Browser status", "a heading of a report"};
constexpr Message kPageErrors{"Page errors", "a heading of a report"};

// A part with a heading; line ends become those of the file.
QString Part(const QString& heading, QString text) {
  text.remove(QLatin1Char('\r'));
  return QStringLiteral("\n%1\n%2\n%3\n")
      .arg(heading, QString(heading.size(), QLatin1Char('-')), text.trimmed());
}

QString EntryLines(const JobReport::Entry& reported, const Translator& translator) {
  const PortEntry& entry = reported.entry;
  const Sentence line{
      kEntryLine,
      {entry.app_name, entry.protocol, entry.start_port, entry.end_port, entry.forwarded_to}};
  QString lines = QStringLiteral("%1\n    %2\n").arg(TextOf(line, translator), reported.state);
  if (!reported.reason.isEmpty()) {
    lines += QStringLiteral("    %1\n").arg(reported.reason);
  }
  return lines;
}

}  // namespace

QList<JobReport::Entry> ReportEntries(const EntryStates& states) {
  const QList<PortEntry> entries = states.Entries();
  const auto text = [&states](int row, EntryStates::Column column) {
    return states.index(row, column).data().toString();
  };
  QList<JobReport::Entry> reported;
  for (int row = 0; row < states.rowCount(); ++row) {
    reported.append({.entry = entries.at(row),
                     .state = text(row, EntryStates::kState),
                     .reason = text(row, EntryStates::kReason)});
  }
  return reported;
}

QString ReportText(const JobReport& report, const QList<Login>& logins,
                   const Translator& translator) {
  QString text = translator.Text(kHeading) + QStringLiteral("\n\n");
  text += QStringLiteral("Quayline %1, Qt %2, %3, %4\n")
              .arg(QCoreApplication::applicationVersion(), QString::fromLatin1(qVersion()),
                   report.engine, QSysInfo::prettyProductName());
  text += TextOf(Sentence{kRouterLine, {report.router_name, report.http_type}}, translator) +
          u'\n' + TextOf(Sentence{kOutcomeLine, {report.outcome}}, translator) + u'\n';
  QString entries;
  for (const JobReport::Entry& entry : report.entries) {
    entries += EntryLines(entry, translator);
  }
  text += Part(translator.Text(kEntries), entries);
  text += Part(translator.Text(kLog), report.log);
  text += Part(translator.Text(kBrowserStatus), report.states);
  text += Part(translator.Text(kPageErrors), report.errors);
  return WithoutLogins(WithoutOutsideAddresses(WithoutHost(text, report.router_host)), logins);
}

}  // namespace quayline
