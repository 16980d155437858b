// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/router_session.h"
#include "i18n/translator.h"
#include "ui/job/entry_states.h"

namespace quayline {

// What a report says of a job. All texts may be those of pages.
struct JobReport {
  QString engine;  // of the browser, with its version
  QString router_name;
  QString router_host;  // without a port
  QString http_type;
  QString outcome;  // the sentence at the end
  struct Entry {
    PortEntry entry;
    QString state;
    QString reason;  // what the router's page showed, or what to do
  };
  QList<Entry> entries;
  QString log;
  QString states;  // what the browser reported
  QString errors;
};

// The entries as the job window shows them.
QList<JobReport::Entry> ReportEntries(const EntryStates& states);

// The report as a file for people who help. None of `logins` is in it, however a page writes it, no
// address of the internet, and not the router's own one.
QString ReportText(const JobReport& report, const QList<Login>& logins,
                   const Translator& translator);

}  // namespace quayline
