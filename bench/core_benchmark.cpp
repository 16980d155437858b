// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include "bench/job/job_data.h"
#include "core/databases.h"
#include "core/port_list_file.h"
#include "core/port_totals.h"
#include "core/rule_match.h"
#include "core/settings.h"
#include "core/update_command.h"

// What the main window does at each click, on lists and databases of the largest size.

namespace quayline::bench {
namespace {

constexpr int kAllPorts = 65'535;

// Rows that clash with no other, so that every check is made of every one.
QList<PortEntry> SinglePorts(int count) {
  QList<PortEntry> entries;
  for (int i = 0; i < count; ++i) {
    const QString port = QString::number(1 + i % kAllPorts);
    entries.append({.app_name = QStringLiteral("App%1").arg(i),
                    .forwarded_to = QStringLiteral("192.168.1.10(FrontDesk)"),
                    .start_port = port,
                    .end_port = port,
                    .protocol = QStringLiteral("TCP"),
                    .description = {}});
  }
  return entries;
}

void TotalsOfAllPorts(benchmark::State& state) {
  QList<PortEntry> entries = SinglePorts(1);
  entries.first().end_port = QString::number(kAllPorts);
  entries.first().protocol = QStringLiteral("TCP/UDP");
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(ComputeTotals(entries));
  }
}
BENCHMARK(TotalsOfAllPorts);

void Totals(benchmark::State& state) {
  const QList<PortEntry> entries = SinglePorts(static_cast<int>(state.range(0)));
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(ComputeTotals(entries));
  }
}
BENCHMARK(Totals)->Arg(1000)->Arg(kAllPorts)->Unit(benchmark::kMicrosecond);

// The loop over all pairs that CheckUpdate() spares itself, with nothing but its comparisons.
void EveryPairOfRows(benchmark::State& state) {
  const QList<PortEntry> entries = SinglePorts(static_cast<int>(state.range(0)));
  while (state.KeepRunning()) {
    int clashes = 0;
    for (const PortEntry& row : entries) {
      for (const PortEntry& other : entries) {
        clashes +=
            &row != &other && (row.app_name == other.app_name || row.start_port == other.start_port)
                ? 1
                : 0;
      }
    }
    benchmark::DoNotOptimize(clashes);
  }
}
BENCHMARK(EveryPairOfRows)->Arg(1000)->Unit(benchmark::kMicrosecond);

void CheckBeforeUpdate(benchmark::State& state) {
  const QTemporaryDir folder;
  const Translator translator(folder.path());
  RouterSession session;
  session.router_name = QStringLiteral("A router");
  session.router_id = 1;
  session.router_ip = QStringLiteral("192.168.1.1");
  session.supports_both = QStringLiteral("yes");
  session.min_port = QStringLiteral("1");
  session.max_port = QString::number(kAllPorts);
  session.max_range = QString::number(kAllPorts);
  session.update_script = QStringList{QStringLiteral("nav(\"a\")")};
  const QList<PortEntry> entries = SinglePorts(static_cast<int>(state.range(0)));
  while (state.KeepRunning()) {
    const UpdateVerdict verdict = CheckUpdate(entries, session, translator);
    if (!verdict.accepted) {
      state.SkipWithError("The list was refused: not every check was made.");
    }
  }
}
BENCHMARK(CheckBeforeUpdate)->Arg(1000)->Arg(kAllPorts)->Unit(benchmark::kMicrosecond);

void LoadList(benchmark::State& state) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("list.qyl"));
  const auto rows = static_cast<int>(state.range(0));
  if (!SavePortList(SinglePorts(rows), file)) {
    state.SkipWithError("The list cannot be written.");
  }
  while (state.KeepRunning()) {
    const auto loaded = LoadPortList(file);
    if (!loaded || loaded->size() != rows) {
      state.SkipWithError("The list was not read.");
    }
  }
}
BENCHMARK(LoadList)->Arg(1000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void WriteOneSetting(benchmark::State& state) {
  const QTemporaryDir folder;
  Settings settings(folder.filePath(QStringLiteral("settings.ini")));
  int value = 0;
  while (state.KeepRunning()) {
    if (!settings.SetValue(setting::kRouterIp, QString::number(++value))) {
      state.SkipWithError("The setting was not written.");
    }
  }
}
BENCHMARK(WriteOneSetting)->Unit(benchmark::kMicrosecond);

// A program's folder with that many routers, made once.
const QString& FolderWithRouters(int count) {
  static const QTemporaryDir folder;
  static const QString path = [count] {
    QList<RouterRecord> routers;
    for (int i = 1; i <= count; ++i) {
      routers.append({.id = i,
                      .routername = QStringLiteral("Router %1").arg(i),
                      .routercommands = QStringLiteral("nav(\"forward.htm\")\r\n").repeated(30)});
    }
    return WriteProgramFolder(routers, folder.path()) ? folder.path() : QString();
  }();
  return path;
}

constexpr int kRouters = 10'000;

void FindOneOfManyRouters(benchmark::State& state) {
  Databases databases;
  if (!databases.Open(FolderWithRouters(kRouters))) {
    state.SkipWithError("The databases cannot be opened.");
  }
  int id = 0;
  constexpr int kStride = 7919;  // a prime: another page of the file each time
  while (state.KeepRunning()) {
    id = (id + kStride) % kRouters;
    const auto router = databases.FindRouter(id + 1);
    if (!router || router->id != id + 1) {
      state.SkipWithError("The router was not found.");
    }
  }
}
BENCHMARK(FindOneOfManyRouters)->Unit(benchmark::kMicrosecond);

void ReadManyRouterNames(benchmark::State& state) {
  Databases databases;
  if (!databases.Open(FolderWithRouters(kRouters))) {
    state.SkipWithError("The databases cannot be opened.");
  }
  constexpr int kStep = 500;
  while (state.KeepRunning()) {
    int count = 0;
    for (QList<RouterName> names = databases.RouterNames(0, kStep); !names.isEmpty();
         names = databases.RouterNames(names.last().id, kStep)) {
      count += static_cast<int>(names.size());
    }
    if (count != kRouters) {
      state.SkipWithError("Routers are missing.");
    }
  }
}
BENCHMARK(ReadManyRouterNames)->Unit(benchmark::kMillisecond);

// A list of 20 entries is looked up on a page of many rules, as after a job.
void FindEntriesOnAPageOfRules(benchmark::State& state) {
  constexpr int kEntries = 20;
  constexpr int kFirstPort = 2000;
  const QStringList headings{QStringLiteral("No."),      QStringLiteral("Name"),
                             QStringLiteral("Start"),    QStringLiteral("End"),
                             QStringLiteral("Protocol"), QStringLiteral("IP address")};
  PageRows page{.rows = {}, .headings = {headings}};
  QList<PortEntry> entries;
  for (int i = 0; i < state.range(0); ++i) {
    const QString port = QString::number(kFirstPort + i);
    const QStringList texts{QString::number(i + 1), QStringLiteral("Rule%1").arg(i), port, port,
                            QStringLiteral("TCP"),  QStringLiteral("192.168.1.5")};
    PageRow row;
    for (qsizetype cell = 0; cell < texts.size(); ++cell) {
      row.cells.append({.heading = headings[cell], .text = texts[cell]});
    }
    page.rows.append(row);
    if (i < kEntries) {
      entries.append({texts[1], texts[5], port, port, texts[4], {}});
    }
  }
  for (auto _ : state) {
    if (MatchRules(entries, page).last().state != RuleState::kOnRouter) {
      state.SkipWithError("An entry was not found.");
    }
  }
}
BENCHMARK(FindEntriesOnAPageOfRules)->Arg(10)->Arg(500)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quayline::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
