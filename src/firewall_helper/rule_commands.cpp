// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "firewall_helper/rule_commands.h"

#include <cstdio>
#include <expected>
#include <poll.h>
#include <unistd.h>

#include "firewall_helper/fixed_program.h"
#include "platform/linux/nft_ruleset.h"
#include "platform/linux/ufw_status.h"

namespace quayline {

namespace {

void Print(const QByteArray& text, FILE* file = stdout) {
  std::fwrite(text.data(), 1, static_cast<size_t>(text.size()), file);
  std::fflush(file);
}

void PrintProgress(qsizetype rule) { Print(QByteArray::number(rule) + '\n'); }

FixedProgram Nft() { return FixedProgram(QStringLiteral("nft")); }
FixedProgram Ufw() { return FixedProgram(QStringLiteral("ufw")); }

// Prints why it failed.
HelperCode Failure(const ProgramOutput& run) {
  Print(run.errors.isEmpty() ? run.output : run.errors, stderr);
  return HelperCode::kFailed;
}

bool IsInputClosed() {
  pollfd input{.fd = STDIN_FILENO, .events = POLLIN};
  char byte = 0;
  return poll(&input, 1, 0) > 0 && read(STDIN_FILENO, &byte, 1) <= 0;
}

HelperCode List(const FixedProgram& program, const QStringList& arguments) {
  if (!program.Exists()) {
    return HelperCode::kMissing;
  }
  const ProgramOutput run = program.Run(arguments);
  if (run.exit_code != 0) {
    return Failure(run);
  }
  Print(run.output);
  return HelperCode::kDone;
}

using MakeScript = QByteArray (NftRuleset::*)(const QList<FirewallPorts>& ports) const;

HelperCode ChangeNft(const QList<FirewallPorts>& ports, MakeScript make) {
  const FixedProgram nft = Nft();
  if (!nft.Exists()) {
    return HelperCode::kMissing;
  }
  const ProgramOutput list =
      nft.Run({QStringLiteral("-j"), QStringLiteral("list"), QStringLiteral("ruleset")});
  const auto ruleset = NftRuleset::Read(list.output);
  if (list.exit_code != 0 || !ruleset) {
    return Failure(list);
  }
  if (!ruleset->IsInUse()) {
    return HelperCode::kNoFirewall;
  }
  for (qsizetype rule = 0; rule < ports.size(); ++rule) {
    PrintProgress(rule);
  }
  if (IsInputClosed()) {
    return HelperCode::kStopped;
  }
  if (const QByteArray script = (*ruleset.*make)(ports); !script.isEmpty()) {
    const ProgramOutput change = nft.Run({QStringLiteral("-f"), QStringLiteral("-")}, script);
    if (change.exit_code != 0) {
      return Failure(change);
    }
  }
  return HelperCode::kDone;
}

// "6881:6889/udp"
QString UfwPorts(const FirewallPorts& ports) {
  const QString numbers = PortsText(ports.first, ports.last);
  return QString(numbers).replace(QLatin1Char('-'), QLatin1Char(':')) + QLatin1Char('/') +
         ProtocolWord(ports.protocol).toLower();
}

using MakeArguments = QStringList (*)(const UfwStatus& status, const FirewallPorts& ports);

HelperCode ChangeUfw(const QList<FirewallPorts>& ports, MakeArguments make) {
  const FixedProgram ufw = Ufw();
  if (!ufw.Exists()) {
    return HelperCode::kMissing;
  }
  const ProgramOutput list = ufw.Run({QStringLiteral("status"), QStringLiteral("verbose")});
  if (list.exit_code != 0) {
    return Failure(list);
  }
  const UfwStatus status = ReadUfwStatus(list.output);
  for (qsizetype rule = 0; rule < ports.size(); ++rule) {
    if (IsInputClosed()) {
      return HelperCode::kStopped;
    }
    PrintProgress(rule);
    if (const UfwRule* users = status.Find(ports[rule]); users != nullptr && !users->allows) {
      Print("ufw has a rule that blocks " + UfwPorts(ports[rule]).toLatin1() +
                ". Please remove it first.\n",
            stderr);
      return HelperCode::kFailed;
    }
    const QStringList arguments = make(status, ports[rule]);
    const ProgramOutput change =
        arguments.isEmpty() ? ProgramOutput{.exit_code = 0} : ufw.Run(arguments);
    if (change.exit_code != 0) {
      return Failure(change);
    }
  }
  return HelperCode::kDone;
}

}  // namespace

HelperCode ListNft() {
  return List(Nft(), {QStringLiteral("-j"), QStringLiteral("list"), QStringLiteral("ruleset")});
}

HelperCode ListUfw() { return List(Ufw(), {QStringLiteral("status"), QStringLiteral("verbose")}); }

HelperCode AddToNft(const QList<FirewallPorts>& ports) {
  return ChangeNft(ports, &NftRuleset::ScriptToAdd);
}

HelperCode RemoveFromNft(const QList<FirewallPorts>& ports) {
  return ChangeNft(ports, &NftRuleset::ScriptToRemove);
}

// First of all rules, since the first one that fits counts. A rule that the user made for the same
// ports stays as it is: ufw would change it to ours.
HelperCode AddToUfw(const QList<FirewallPorts>& ports) {
  return ChangeUfw(ports, [](const UfwStatus& status, const FirewallPorts& wanted) {
    return status.Find(wanted) != nullptr
               ? QStringList()
               : QStringList{QStringLiteral("prepend"), QStringLiteral("allow"), UfwPorts(wanted),
                             QStringLiteral("comment"), OwnRuleName(wanted)};
  });
}

HelperCode RemoveFromUfw(const QList<FirewallPorts>& ports) {
  return ChangeUfw(ports, [](const UfwStatus& status, const FirewallPorts& wanted) {
    const UfwRule* rule = status.Find(wanted);
    return rule != nullptr && rule->allows && IsOwnRuleName(rule->comment)
               ? QStringList{QStringLiteral("delete"), QStringLiteral("allow"), UfwPorts(wanted)}
               : QStringList();
  });
}

}  // namespace quayline
