// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// quayline-firewall-helper (nft|ufw) list
// quayline-firewall-helper (nft|ufw) (add|remove) (tcp|udp):FIRST[-LAST] ...
//
// Runs as root, started by Quayline through pkexec. It takes nothing but these arguments: the names
// of the rules, the programs and all of their arguments are its own.

#include <QCoreApplication>

#include <cstdio>
#include <unistd.h>

#include "firewall_helper/privileges.h"
#include "firewall_helper/rule_commands.h"

namespace quayline {
namespace {

constexpr qsizetype kMaxRules = 20'000;

using Change = HelperCode (*)(const QList<FirewallPorts>& ports);

struct Command {
  const char* firewall;
  NeededRights rights;
  HelperCode (*list)();
  Change add;
  Change remove;
};

constexpr Command kCommands[] = {
    {"nft", NeededRights::kNetworkOnly, ListNft, AddToNft, RemoveFromNft},
    {"ufw", NeededRights::kNetworkAndFiles, ListUfw, AddToUfw, RemoveFromUfw},
};

HelperCode ReportUsage() {
  std::fputs(
      "usage: quayline-firewall-helper (nft|ufw) (list | (add|remove) (tcp|udp):FIRST[-LAST] "
      "...)\n",
      stderr);
  return HelperCode::kUsage;
}

HelperCode Run(const QStringList& arguments) {
  const Command* command = nullptr;
  for (const Command& each : kCommands) {
    command = arguments.value(0) == QLatin1String(each.firewall) ? &each : command;
  }
  const QString verb = arguments.value(1);
  const bool is_list = verb == QLatin1String("list");
  const bool is_add = verb == QLatin1String("add");
  QList<FirewallPorts> ports;
  for (const QString& argument : arguments.mid(2)) {
    const std::optional<FirewallPorts> parsed = ParsePortsArgument(argument);
    if (!parsed || ports.size() == kMaxRules) {
      return ReportUsage();
    }
    ports.append(*parsed);
  }
  if (command == nullptr || !(is_list || is_add || verb == QLatin1String("remove")) ||
      is_list != ports.isEmpty()) {
    return ReportUsage();
  }
  if (geteuid() != 0 || !DropRights(command->rights)) {
    std::fputs("quayline-firewall-helper needs the rights of an administrator\n", stderr);
    return HelperCode::kRights;
  }
  return is_list ? command->list() : (is_add ? command->add : command->remove)(ports);
}

}  // namespace
}  // namespace quayline

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return static_cast<int>(quayline::Run(QCoreApplication::arguments().mid(1)));
}
