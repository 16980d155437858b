// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QMap>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>

#include "bench/job/contender.h"
#include "bench/job/job_data.h"
#include "bench/job/race.h"
#include "bench/job/timeline.h"
#include "bench/median.h"
#include "script/web/web_engine.h"

// One job on a demo router, done by Quayline's engine and by others in turn. See README.md.

namespace quayline::bench {
namespace {

constexpr char kRouterFile[] = QUAYLINE_SOURCE_DIR "/bench/data/longlist.txt";

struct Setting {
  int rows;
  int delay_ms;
};
constexpr Setting kSettings[] = {{40, 0}, {400, 0}, {40, 20}};

void PrintLoad() {
  QFile file(QStringLiteral("/proc/loadavg"));
  if (file.open(QIODevice::ReadOnly)) {
    std::printf("load of the machine: %s", file.readAll().constData());
  }
}

void PrintResults(const std::vector<Result>& results, int entries) {
  const auto WallOf = [&results](const char* name) {
    const auto result = std::ranges::find(results, QLatin1String(name), &Result::name);
    return result == results.end() ? 0 : Median(result->wall_ms);
  };
  const double calls = WallOf("playwright-calls");
  const double scripts = WallOf("playwright-scripts");
  const auto Ratio = [](double wall, double other) { return other > 0 ? wall / other : 0; };
  std::printf("%-20s %9s %9s %9s %9s %9s %9s %10s %8s\n", "", "median ms", "least ms", "an entry",
              "of calls", "of script", "cpu ms", "exchanges", "PSS MiB");
  for (const Result& result : results) {
    const double wall = Median(result.wall_ms);
    constexpr long kKibPerMib = 1024;
    std::printf("%-20s %9.1f %9.1f %9.2f %9.3f %9.3f %9.1f %10.2f %8ld\n", qPrintable(result.name),
                wall, std::ranges::min(result.wall_ms), wall / entries, Ratio(wall, calls),
                Ratio(wall, scripts), Median(result.processor_ms), result.exchanges,
                result.memory.pss_kib / kKibPerMib);
  }
}

void PrintSteps(Race& race) {
  QHash<QString, double> steps = race.MeasureSteps(QStringLiteral("bare"));
  const double trip = steps.value(QStringLiteral("round_trip"));
  const double load = steps.value(QStringLiteral("load"));
  std::printf("\none round trip to the page %.0f us, one load of the page %.0f us\n", trip, load);
  std::printf("%-20s %9s %9s\n", "command", "us", "added us");
  const QHash<QString, double> costs = race.MeasureSteps(QStringLiteral("quayline"));
  QStringList names = costs.keys();
  names.sort();
  for (const QString& name : names) {
    const double below = name == QLatin1String("nav") ? load : trip;
    std::printf("%-20s %9.0f %9.0f\n", qPrintable(name), costs.value(name),
                std::max(0.0, costs.value(name) - below));
  }
}

void PrintSetting(const QString& program, const RouterRecord& router, const RaceOptions& options,
                  bool with_steps) {
  std::printf("\n%d entries, a page of %d rows, %d ms an answer, %d rounds\n", options.entries,
              options.rows, options.delay_ms, options.rounds);
  for (qsizetype flag = 0; flag < options.flags.size(); ++flag) {
    std::printf("quayline +%d: %s\n", static_cast<int>(flag) + 1, qPrintable(options.flags[flag]));
  }
  Race race(program, router, options);
  PrintResults(race.Run(), options.entries);
  if (with_steps) {
    PrintSteps(race);
  }
  std::fflush(stdout);
}

// What the browser does, and how long at the median, over all entries.
void PrintPhases(const QList<EntryTrace>& entries) {
  QMap<QString, std::vector<double>> lengths;
  constexpr double kUsPerMs = 1000;
  for (const EntryTrace& entry : entries) {
    lengths[QStringLiteral("an entry")].push_back(static_cast<double>(entry.Length()) / kUsPerMs);
    QHash<QString, int> seen;
    for (const Span& span : entry.spans) {
      const QString number = QString::number(++seen[span.what]);
      const QString what =
          span.lane == Lane::kScript ? span.what : span.what + QLatin1Char(' ') + number;
      lengths[what].push_back(static_cast<double>(span.end - span.begin) / kUsPerMs);
    }
  }
  for (auto length = lengths.cbegin(); length != lengths.cend(); ++length) {
    std::printf("%-28s %8.2f ms\n", qPrintable(length.key()), Median(length.value()));
  }
}

int DrawTimeline(const QString& program, const RouterRecord& router, RaceOptions options,
                 const QString& file_name) {
  options.only = QStringList{QStringLiteral("quayline")};
  Race race(program, router, options);
  QList<EntryTrace> entries = ReadTrace(race.Trace());
  if (entries.isEmpty()) {
    std::fprintf(stderr, "The trace holds no entry.\n");
    return 2;
  }
  PrintPhases(entries);
  QSaveFile file(file_name);
  if (!file.open(QIODevice::WriteOnly) || file.write(TimelineSvg(MedianEntry(entries))) < 0 ||
      !file.commit()) {
    std::fprintf(stderr, "No picture: %s\n", qPrintable(file.errorString()));
    return 2;
  }
  return 0;
}

PageView ViewOf(const QString& name) {
  return name.endsWith(QLatin1String("-hidden"))  ? PageView::kHidden
         : name.endsWith(QLatin1String("-stamp")) ? PageView::kStamp
                                                  : PageView::kWindow;
}

int RunContender(const QString& name, const JobSite& site) {
  std::unique_ptr<Contender> contender;
  if (name == QLatin1String("http")) {
    contender = MakeHttpContender(site);
  } else if (name.startsWith(QLatin1String("quayline"))) {
    contender = MakeQuaylineContender(site, ViewOf(name));
  } else {
    // Straight to the router, past the gate that Quayline's own traffic goes through.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --no-proxy-server");
    contender = MakeBareContender(site, ViewOf(name), name.endsWith(QLatin1String("-scripts")));
  }
  return Serve(*contender);
}

struct Arguments {
  RaceOptions race;
  bool one_setting = false;
  QString contender;
  QUrl page;
  QString timeline;
};

Arguments ReadArguments() {
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOptions(
      {{QStringLiteral("rounds"), QStringLiteral("Rounds of each race (5)."), QStringLiteral("N"),
        QStringLiteral("5")},
       {QStringLiteral("entries"), QStringLiteral("Entries of the job (20)."), QStringLiteral("N"),
        QStringLiteral("20")},
       {QStringLiteral("rows"), QStringLiteral("Only a page of this many rows."),
        QStringLiteral("N"), QStringLiteral("40")},
       {QStringLiteral("delay"), QStringLiteral("Only answers after this time."),
        QStringLiteral("MS"), QStringLiteral("0")},
       {QStringLiteral("only"), QStringLiteral("Only these, with commas between."),
        QStringLiteral("NAMES")},
       {QStringLiteral("flags"),
        QStringLiteral("Runs Quayline's engine once more with each of these flags of the web "
                       "engine, with semicolons between."),
        QStringLiteral("FLAGS")},
       {QStringLiteral("timeline"),
        QStringLiteral("Draws what happens during one entry, and nothing else."),
        QStringLiteral("SVG")},
       {QStringLiteral("verbose"), QStringLiteral("Shows what browsers complain of.")},
       {QStringLiteral("contender"), QStringLiteral("For the program itself."),
        QStringLiteral("NAME")},
       {QStringLiteral("page"), QStringLiteral("Likewise."), QStringLiteral("URL")}});
  parser.process(*QCoreApplication::instance());
  const auto Number = [&parser](const char* name) {
    return parser.value(QLatin1String(name)).toInt();
  };
  Arguments arguments;
  arguments.race = {
      .rows = Number("rows"),
      .delay_ms = Number("delay"),
      .entries = Number("entries"),
      .rounds = Number("rounds"),
      .verbose = parser.isSet(QStringLiteral("verbose")),
      .only = parser.value(QStringLiteral("only")).split(QLatin1Char(','), Qt::SkipEmptyParts),
      .flags = parser.value(QStringLiteral("flags")).split(QLatin1Char(';'), Qt::SkipEmptyParts)};
  arguments.one_setting =
      parser.isSet(QStringLiteral("rows")) || parser.isSet(QStringLiteral("delay"));
  arguments.contender = parser.value(QStringLiteral("contender"));
  arguments.page = QUrl(parser.value(QStringLiteral("page")));
  arguments.timeline = parser.value(QStringLiteral("timeline"));
  return arguments;
}

int Run() {
  const Arguments arguments = ReadArguments();
  const auto router = ReadBenchRouter(QLatin1String(kRouterFile));
  if (!router) {
    std::fprintf(stderr, "%s\n", qPrintable(router.error()));
    return 2;
  }
  if (!arguments.contender.isEmpty()) {
    return RunContender(
        arguments.contender,
        {.page = arguments.page, .router = *router, .entries = JobEntries(arguments.race.entries)});
  }
  const QString program = QCoreApplication::applicationFilePath();
  if (!arguments.timeline.isEmpty()) {
    return DrawTimeline(program, *router, arguments.race, arguments.timeline);
  }
  PrintLoad();
  if (arguments.one_setting) {
    PrintSetting(program, *router, arguments.race, false);
  } else {
    for (const Setting& setting : kSettings) {
      RaceOptions options = arguments.race;
      options.rows = setting.rows;
      options.delay_ms = setting.delay_ms;
      PrintSetting(program, *router, options,
                   &setting == &kSettings[0] && arguments.race.only.isEmpty());
    }
  }
  PrintLoad();
  return 0;
}

}  // namespace
}  // namespace quayline::bench

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // As quayline-cli does: these pages are not shown.
  quayline::PrepareWebEngine(quayline::PagesAre::kUnseen);
  const QApplication application(argc, argv);
  return quayline::bench::Run();
}
