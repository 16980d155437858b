// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/entry_arguments.h"

namespace quayline {

void GiveEntry(RunArguments& arguments, const PortEntry& entry) {
  arguments.entry_name = entry.app_name;
  arguments.entry_protocol = entry.protocol;
  arguments.entry_start_port = entry.start_port;
  arguments.entry_end_port = entry.end_port;
  const qsizetype parenthesis = entry.forwarded_to.indexOf(QLatin1Char('('));
  arguments.entry_ip = entry.forwarded_to.left(parenthesis);
  if (parenthesis >= 0) {
    arguments.entry_computer_name = entry.forwarded_to.mid(parenthesis + 1);
    arguments.entry_computer_name.chop(1);
  }
}

PortEntry EntryOf(const RunArguments& arguments) {
  return {.app_name = arguments.entry_name,
          .forwarded_to = arguments.entry_ip + QLatin1Char('(') + arguments.entry_computer_name +
                          QLatin1Char(')'),
          .start_port = arguments.entry_start_port,
          .end_port = arguments.entry_end_port,
          .protocol = arguments.entry_protocol,
          .description = {}};
}

}  // namespace quayline
