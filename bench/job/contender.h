// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSize>
#include <QString>
#include <QUrl>

#include <memory>

#include "async/task.h"
#include "core/port_entry.h"
#include "core/records.h"

namespace quayline::bench {

struct JobSite {
  QUrl page;  // of the rules
  RouterRecord router;
  QList<PortEntry> entries;
};

// One way of doing the job, in a process of its own. It reads commands, one a line, from standard
// input, and writes "ready" and "done" to standard output, with its measurements between them:
//
//   prepare   what has to be done before each job or measurement, and is not measured job       the
//   whole job commands  "cost <what> <microseconds>" for each of many repetitions of single steps
//   trace     the job, with "event <microseconds> <what>" for what happened when
//
// Everything that is done once (the browser's start, the login) is done before "ready".
class Contender {
 public:
  virtual ~Contender() = default;
  virtual Task<> Prepare() = 0;
  virtual Task<> Do(QString what) = 0;
};

// How much of a page is rendered.
enum class PageView {
  kWindow,  // 1024 x 768, as the command line renders it, without showing it
  kStamp,   // shown, but next to nothing fits in
  kHidden   // not shown: no painting, no keys, slow timers
};
QSize SizeOf(PageView view);

// Quayline's engine.
std::unique_ptr<Contender> MakeQuaylineContender(const JobSite& site, PageView view);
// The web engine that Quayline's is built on, driven by a bare loop: no proofs, no checks, no log.
// With or without the scripts that Quayline keeps in every page.
std::unique_ptr<Contender> MakeBareContender(const JobSite& site, PageView view, bool with_scripts);
// The same HTTP exchange without a browser.
std::unique_ptr<Contender> MakeHttpContender(const JobSite& site);

// Writes a line at once.
void Say(const QString& line);

// Runs a contender until its standard input ends. Needs an application. Returns the exit status.
int Serve(Contender& contender);

}  // namespace quayline::bench
