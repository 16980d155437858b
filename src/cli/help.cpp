// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/help.h"

#include "cli/update_options.h"

namespace quayline {

namespace {

// The help of the options in two columns.
QString OptionsHelp() {
  constexpr qsizetype kColumn = 23;
  QString help;
  for (const UpdateOption& option : UpdateOptions()) {
    QString head = QStringLiteral("  --") + option.Name();
    if (option.value != nullptr) {
      head += QLatin1Char(' ') + QLatin1String(option.value);
    }
    const bool fits = head.size() < kColumn - 1;
    help += fits ? head.leftJustified(kColumn) : head + QLatin1Char('\n') + QString(kColumn, u' ');
    help += QString::fromLatin1(option.help)
                .replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(kColumn, u' ')) +
            QLatin1Char('\n');
  }
  return help;
}

}  // namespace

QString CliHelp() {
  return QStringLiteral(
             R"(quayline-cli: opens ports on a home router by its own web pages, without a window.

Usage:
  quayline-cli update --data DIR --list FILE [options]
  quayline-cli check --data DIR --list FILE [options]
  quayline-cli routers --data DIR [PART OF A NAME]
  quayline-cli lint FILE
  quayline-cli try ROUTERFILE --pages DIR [--answers FILE] [--list FILE] [--timeout SECONDS]
  quayline-cli commands [NAME | --markdown]
  quayline-cli --help | --version

update enters every entry of a port list into the router and writes the job log to
standard output as it grows. Standard error has what a window would show beside the log: errors
of pages, what pages say, what was refused or blocked, and what the job waits for.
Before the first entry and after the last one it reads the rules that the router's own page shows.
At the end a table says of each entry whether the rule was seen there.

check only looks: it reads the rules and says the same of each entry. Nothing is changed.

)") + OptionsHelp() +
         QStringLiteral(
             R"(
What is not given comes from the settings in DIR, else from the router's row in routers.mdb,
else from the defaults in parentheses. A password is never an argument, and the log never
shows it.

Ctrl-C (or SIGTERM, SIGHUP, SIGQUIT) stops the job: no further command runs, and a save that is
on its way to the router is waited for. A second Ctrl-C ends the program at once.

Exit status:
  0  all entries ran to their end, and each was seen on the router, or the router's page does
     not tell; then standard error says so
  1  the list, or the router's data, was refused before the job began; the reason is on
     standard error
  2  wrong usage, or a file that cannot be read
  3  an entry ended in an error, or the job was stopped (Ctrl-C, --timeout), or another
     Quayline works on the router (--no-wait)
  4  all entries ran, and one is not on the router as it is wanted

routers lists the routers that routers.mdb has scripts for, one a line, with tabs between the columns:
the name as --router takes it; how the scripts were tried: "real" (on a real router), "rebuild" (on
a faithful rebuild of its pages), "documentation" (written from documentation, not tried on a router
yet) or "unknown"; and the firmware that they were written for.

Exit status of routers:
  0  at least one router is listed
  1  no router has such a name
  2  wrong usage, or a file that cannot be read

lint judges the lines of a router script (or of a router's file with its two scripts) and writes
what it finds to standard output, one "file:line: sentence" each. It knows every command: a
name that is nearly one, an argument that is cut at the wrong place, fields that are missing or
lost, invalid numbers. A sentence that begins with "warning:" is about a line that may be
meant so.

Exit status of lint:
  0  nothing, or warnings only
  1  a line cannot do what it says
  2  wrong usage, or a file that cannot be read

try runs the scripts of a router's file without the router: DIR has its pages, and FILE (answers.json
in DIR) says what the router does with what they send. Each line is reported with what it found and
what was sent; passwords are not shown. Without --list two sample entries are entered. What was entered is
removed again where the file has a script for that. Without --timeout a trial is stopped after 300 seconds.

Exit status of try:
  0  the router had the rules of the entries as they are wanted, its page showed them, and the script
     that removes them left all others
  others as for update

commands writes how the commands of router scripts are written, one command with its fields, or the
whole reference as a page.
)");
}

}  // namespace quayline
