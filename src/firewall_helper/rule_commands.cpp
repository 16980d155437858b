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

// Changes one rule after the other until one fails, or standard input is closed.
template <typename Change>
HelperCode ForEach(const QList<FirewallPorts>& ports, Change change) {
  HelperCode code = HelperCode::kDone;
  for (qsizetype rule = 0; rule < ports.size() && code == HelperCode::kDone; ++rule) {
    if (IsInputClosed()) {
      return HelperCode::kStopped;
    }
    PrintProgress(rule);
    code = change(ports[rule]);
  }
  return code;
}

using MakeScript = QByteArray (NftRuleset::*)(const QList<FirewallPorts>& ports) const;

std::expected<NftRuleset, HelperCode> ReadNft(const FixedProgram& nft) {
  if (!nft.Exists()) {
    return std::unexpected(HelperCode::kMissing);
  }
  const ProgramOutput list =
      nft.Run({QStringLiteral("-j"), QStringLiteral("list"), QStringLiteral("ruleset")});
  const auto ruleset = NftRuleset::Read(list.output);
  if (list.exit_code != 0 || !ruleset) {
    return std::unexpected(Failure(list));
  }
  return *ruleset;
}

HelperCode ChangeNft(const QList<FirewallPorts>& ports, MakeScript make) {
  const FixedProgram nft = Nft();
  const auto ruleset = ReadNft(nft);
  if (!ruleset) {
    return ruleset.error();
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

std::expected<UfwStatus, HelperCode> ReadUfw(const FixedProgram& ufw) {
  if (!ufw.Exists()) {
    return std::unexpected(HelperCode::kMissing);
  }
  const ProgramOutput list = ufw.Run({QStringLiteral("status"), QStringLiteral("verbose")});
  if (list.exit_code != 0) {
    return std::unexpected(Failure(list));
  }
  return ReadUfwStatus(list.output);
}

HelperCode Refuse(const QString& sentence) {
  Print(sentence.toUtf8() + '\n', stderr);
  return HelperCode::kFailed;
}

// First of all rules, since the first one that fits counts. A rule that the user made for the same
// ports stays as it is: ufw would change it to ours.
HelperCode AddToUfw(const FixedProgram& ufw, const UfwStatus& before, const FirewallPorts& wanted) {
  const UfwRule* const users = before.Find(wanted);
  if (users != nullptr &&
      !(users->allows && before.OpenPorts(wanted.protocol).HasAll(wanted.first, wanted.last))) {
    return Refuse(QStringLiteral("ufw has a rule that blocks %1. Please remove it first.")
                      .arg(UfwPorts(wanted)));
  }
  const ProgramOutput change =
      users != nullptr
          ? ProgramOutput{.exit_code = 0}
          : ufw.Run({QStringLiteral("prepend"), QStringLiteral("allow"), UfwPorts(wanted),
                     QStringLiteral("comment"), OwnRuleName(wanted)});
  return change.exit_code == 0 ? HelperCode::kDone : Failure(change);
}

// By number, since a rule may have been changed by hand: to an interface, a sender, several ports.
HelperCode RemoveFromUfw(const FixedProgram& ufw, const FirewallPorts& wanted) {
  const ProgramOutput list = ufw.Run({QStringLiteral("status"), QStringLiteral("numbered")});
  if (list.exit_code != 0) {
    return Failure(list);
  }
  for (const int number : OwnUfwRules(list.output, wanted)) {
    const ProgramOutput change =
        ufw.Run({QStringLiteral("--force"), QStringLiteral("delete"), QString::number(number)});
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

HelperCode AddToUfw(const QList<FirewallPorts>& ports) {
  const FixedProgram ufw = Ufw();
  const auto before = ReadUfw(ufw);
  if (!before) {
    return before.error();
  }
  return ForEach(ports, [&](const FirewallPorts& each) { return AddToUfw(ufw, *before, each); });
}

HelperCode RemoveFromUfw(const QList<FirewallPorts>& ports) {
  const FixedProgram ufw = Ufw();
  if (!ufw.Exists()) {
    return HelperCode::kMissing;
  }
  const HelperCode code =
      ForEach(ports, [&](const FirewallPorts& each) { return RemoveFromUfw(ufw, each); });
  const auto after = code == HelperCode::kDone ? ReadUfw(ufw) : std::unexpected(code);
  if (!after) {
    return after.error();
  }
  for (qsizetype rule = 0; rule < ports.size(); ++rule) {
    if (const UfwRule* const left = after->FindOwn(ports[rule])) {
      PrintProgress(rule);  // those before it were removed
      return Refuse(
          QStringLiteral("ufw still has the rule \"%1\". Please remove it there.").arg(left->to));
    }
  }
  return HelperCode::kDone;
}

}  // namespace quayline
