// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <QElapsedTimer>
#include <QWidget>

#include <algorithm>

#include "async/wait.h"
#include "script/command_call.h"
#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/run_parts.h"
#include "script/script_texts.h"

namespace quayline::stress {

namespace {

double Median(QList<double> values) {
  std::ranges::sort(values);
  return values.isEmpty() ? 0 : values[values.size() / 2];
}

class Walker final {
 public:
  Walker(const PageHostFactory& make_host, AnswerDelay delay) : site_(delay), parts_(make_host) {
    if (QWidget* view = parts_.browsers.Active()->Widget()) {
      view->resize(800, 600);
      view->show();
    }
  }

  Task<> Walk(int way, int steps, WayResult* result) {
    result->way = &AllWays()[static_cast<size_t>(way)];
    site_.Begin(way);
    QList<double> clicks;
    QList<double> whole;
    for (int number = 0; number < steps; ++number) {
      QElapsedTimer clock;
      clock.start();
      co_await Step(way, number, result, &clicks);
      whole.append(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    result->click_ms = Median(clicks);
    result->step_ms = Median(whole);
  }

 private:
  Task<> Step(int way, int number, WayResult* result, QList<double>* times) {
    parts_.log.Clear();
    parts_.flags.SetPageErrorPending(false);
    parts_.flags.SetJobStopRequested(false);
    RunArguments arguments;
    arguments.entry_name = QStringLiteral("row");
    arguments.http_type = QStringLiteral("http://");
    arguments.router_host = QStringLiteral("127.0.0.1:%1").arg(site_.Port());
    ScriptRun run(std::move(arguments));
    CommandCall call(parts_.environment, run);
    ++result->steps;
    run.argument = LeavingSite::PagePath(way, number);
    const auto loaded = co_await FindCommand(u"nav")->flow(call);
    const WayOut& out = *result->way;
    if (out.types) {
      co_await call.Ask(
          page_operation::SetElementValue(QStringLiteral("text"), LeavingSite::TypedText(number)));
    }
    if (out.asks) {
      run.argument = QStringLiteral("rules");
      co_await FindCommand(u"is_in_combo")->flow(call);
      result->early += parts_.flags.in_combo ? 0 : 1;
    }
    bool failed = loaded.has_value();
    QElapsedTimer clock;
    clock.start();
    for (int click = 0; click < (out.asks ? 0 : out.clicks); ++click) {
      const quint64 mark = call.MarkPage();
      co_await call.Ask(page_operation::ClickButton(QStringLiteral("go")));
      const auto clicked = co_await call.AwaitPage(mark, ErrorBlock::kAddress);
      failed = failed || clicked;
    }
    times->append(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    const QJsonValue where =
        co_await call.Ask(page_operation::GetElementValue(QStringLiteral("number")));
    run.argument = LeavingSite::PagePath(way, number + 1);
    const auto left = co_await FindCommand(u"nav")->flow(call);
    result->failed += failed || left ? 1 : 0;
    const int expected = out.leaves == Leaves::kForNextPage ? number + 1 : number;
    const bool elsewhere = out.leaves != Leaves::kSomewhere && where.toString().toInt() != expected;
    result->early += elsewhere ? 1 : 0;
    const bool is_reported = out.late && parts_.log.Text().contains(
                                             QLatin1String(script_text::kPendingWorkLost.english));
    const bool is_saved = out.leaves == Leaves::kNotAtAll || site_.WasSaved(way, number + 1);
    result->lost += is_saved || is_reported ? 0 : 1;
  }

  LeavingSite site_;
  testing::RunParts parts_;
};

}  // namespace

Task<> RunStress(PageHostFactory make_host, StressOptions options, QList<WayResult>* results) {
  constexpr double kPatienceMs = 1000;
  Walker walker(make_host, options.delay);
  std::vector<size_t> ways = options.ways;
  for (size_t way = 0; options.ways.empty() && way < AllWays().size(); ++way) {
    ways.push_back(way);
  }
  WayResult plain;
  co_await walker.Walk(0, options.steps_per_way, &plain);
  for (const size_t way : ways) {
    WayResult result;
    co_await walker.Walk(static_cast<int>(way), options.steps_per_way, &result);
    result.is_slow = result.way->works && result.step_ms > plain.step_ms + kPatienceMs;
    results->append(result);
  }
}

}  // namespace quayline::stress
