// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_mapper.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>

#include "core/port_range.h"
#include "core/program_entries.h"
#include "core/protocol.h"
#include "core/reader_process.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kMaxPorts = 200;  // of an entry: each is a rule of its own, and routers are slow
constexpr qsizetype kMaxAnswer = qsizetype{1} << 20;
constexpr auto kLimitToFind = 15s;
constexpr auto kLimitOfRule = 2s;

// One for each port and protocol, as the mapper takes them.
QJsonArray RulesOf(const PortEntry& entry) {
  QJsonArray rules;
  const int start = PortNumber(entry.start_port).value_or(0);
  const int end = PortNumber(entry.end_port).value_or(0);
  const QString protocols = entry.protocol.toLower();
  for (const char* protocol : {"tcp", "udp"}) {
    for (int port = start; port <= end && protocols.contains(QLatin1String(protocol)); ++port) {
      rules.append(QJsonObject{{QStringLiteral("protocol"), QLatin1String(protocol)},
                               {QStringLiteral("port"), port},
                               {QStringLiteral("to"), AddressOf(entry.forwarded_to)},
                               {QStringLiteral("name"), entry.app_name}});
    }
  }
  return rules;
}

MappingResult ResultOf(const QString& word) {
  if (word == QLatin1String("open")) {
    return MappingResult::kOpen;
  }
  if (word == QLatin1String("missing")) {
    return MappingResult::kMissing;
  }
  if (word == QLatin1String("taken")) {
    return MappingResult::kTaken;
  }
  return word == QLatin1String("refused") ? MappingResult::kRefused : MappingResult::kUnknown;
}

const char* Word(MappingVerb verb) {
  switch (verb) {
    case MappingVerb::kOpen:
      return "open";
    case MappingVerb::kCheck:
      return "check";
    case MappingVerb::kClose:
      return "close";
    case MappingVerb::kFind:
      break;
  }
  return "find";
}

QString NameOf(const QString& protocol) {
  return protocol == QLatin1String("upnp")      ? QStringLiteral("UPnP")
         : protocol == QLatin1String("nat-pmp") ? QStringLiteral("NAT-PMP")
                                                : QString();
}

MappingAnswer ReadAnswer(const QByteArray& bytes, const QList<qsizetype>& rules_of_entries) {
  const QJsonObject json = QJsonDocument::fromJson(bytes).object();
  const QJsonArray words = json[QStringLiteral("results")].toArray();
  MappingAnswer answer{.protocol = NameOf(json[QStringLiteral("speaks")].toString()),
                       .outside_address =
                           QHostAddress(json[QStringLiteral("outside")].toString()).toString(),
                       .results = {}};
  qsizetype next = 0;
  for (const qsizetype rules : rules_of_entries) {
    MappingResult worst = rules > 0 ? MappingResult::kOpen : MappingResult::kUnknown;
    for (qsizetype i = 0; i < rules; ++i) {
      worst = std::max(worst, ResultOf(words.at(next++).toString()));
    }
    answer.results.append(worst);
  }
  return answer;
}

}  // namespace

bool CanBeMapped(const PortEntry& entry) {
  const int start = PortNumber(entry.start_port).value_or(0);
  const int end = PortNumber(entry.end_port).value_or(0);
  return start >= 1 && end >= start && end <= 65535 && end - start < kMaxPorts &&
         ProtocolOf(entry.protocol).has_value() &&
         QHostAddress(AddressOf(entry.forwarded_to)).protocol() == QAbstractSocket::IPv4Protocol;
}

Task<std::expected<MappingAnswer, QString>> AskRouterToMap(MappingRequest request) {
  QJsonArray rules;
  QList<qsizetype> rules_of_entries;
  for (const PortEntry& entry : request.entries) {
    const QJsonArray rules_of_entry = RulesOf(entry);
    rules_of_entries.append(rules_of_entry.size());
    for (const QJsonValue& rule : rules_of_entry) {
      rules.append(rule);
    }
  }
  const QJsonObject json{{QStringLiteral("do"), QLatin1String(Word(request.verb))},
                         {QStringLiteral("router"), request.router},
                         {QStringLiteral("seconds"), static_cast<qint64>(request.time.count())},
                         {QStringLiteral("rules"), rules}};
  ReaderRequest run{.arguments = {},
                    .input = QJsonDocument(json).toJson(QJsonDocument::Compact),
                    .time_limit = kLimitToFind + kLimitOfRule * rules.size(),
                    .max_output = kMaxAnswer,
                    .program = QStringLiteral("quayline-mapper")};
  const ReaderResult output = co_await RunReaderInBackground(std::move(run));
  if (!output) {
    co_return std::unexpected(
        QStringLiteral("The router could not be asked: the program for it is missing, or the "
                       "router takes too long."));
  }
  co_return ReadAnswer(*output, rules_of_entries);
}

}  // namespace quayline
