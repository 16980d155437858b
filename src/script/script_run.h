// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quayline {

// What one pass of a script is given: the entry, the login and the place of the entry in its job.
struct RunArguments {
  QStringList commands;
  int entry_index = 1;  // from 1
  bool is_first_entry = true;
  bool is_last_entry = true;

  QString http_type;    // "http://" or "https://"
  QString router_host;  // with ":" and the port where it is not 80
  QString username;
  QString password;
  QString shown_password;  // what a log may show of it

  QString entry_name;
  QString entry_protocol;  // "TCP", "UDP" or "TCP/UDP"
  QString entry_start_port;
  QString entry_end_port;
  QString entry_ip;
  QString entry_computer_name;
  // Rows of the router's page that a script which removes the entry leaves alone, as RowTexts has
  // them.
  QStringList rows_to_keep;

  bool IsProtocol(const char* protocol) const {
    return entry_protocol.compare(QLatin1String(protocol), Qt::CaseInsensitive) == 0;
  }
  bool UsesBoth() const { return IsProtocol("tcp/udp"); }
  bool UsesTcp() const { return IsProtocol("tcp") || UsesBoth(); }
  bool UsesUdp() const { return IsProtocol("udp") || UsesBoth(); }
};

// The state of one pass. All of it is lost at the pass's end: nothing carries over from one entry
// to the next, and a script sets again what it needs.
struct ScriptRun {
  explicit ScriptRun(RunArguments arguments)
      : given(std::move(arguments)),
        ip_parts(given.entry_ip.split(QLatin1Char('.'))),
        trimmed_username(given.username.trimmed()),
        trimmed_password(given.password.trimmed()) {}

  // Part `number` (1 to 4) of the entry's address; empty where the address has no such part.
  QString IpPart(int number) const { return ip_parts.value(number - 1); }

  // The page's own word for the entry's protocol, as far as the script has set it; nothing for an
  // unknown protocol.
  std::optional<QString> TypeChoice() const {
    if (given.UsesBoth()) {
      return type_choice_both;
    }
    if (given.UsesTcp()) {
      return type_choice_tcp;
    }
    return given.UsesUdp() ? std::optional(type_choice_udp) : std::nullopt;
  }

  const RunArguments given;
  const QStringList ip_parts;
  const QString trimmed_username;  // what addresses are built with
  const QString trimmed_password;

  QString argument;    // of the current line; field 0 where the command splits it
  QStringList fields;  // of the current line, with what was inserted: see ReadArgument()
  QString url;         // the last address built, as the log shows it

  // What the page's markup was at its last answer; empty if it is not known.
  QString markup_state;
  // Two looks at the markup were equal, and since then nothing was done on the page or awaited.
  bool is_settled = false;
  // The error texts that came with an answer of the page, and what they are of.
  struct Complaints {
    quint64 page = 0;  // the mark
    QString markup_state;
    QStringList texts;
  };
  std::optional<Complaints> complaints;

  // The page has pending work that nothing has waited for yet.
  bool page_has_pending_work = false;
  // The mark of the page on which something stayed missing until its pending work was done.
  std::optional<quint64> missed_at;

  // How many times something of the entry was put into a page.
  int inputs = 0;

  bool was_found = true;  // by the operation that was logged last on the current line

  int frame_number = 0;  // 0: the top document
  QString frame_name;    // target frame of every navigation

  // Fields 1 and 2 of an argument. A line that lacks the field leaves what an earlier line set.
  QString position;
  QString extra_field;

  QString current_name;     // what is inserted into field names
  QString name_array_text;  // names separated by "|"
  QString checked_string;   // what set_string_to_check chose

  // The page's own words for the protocols.
  QString type_choice_tcp;
  QString type_choice_udp;
  QString type_choice_both;
};

}  // namespace quayline
