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

namespace quayline::stress {

namespace {

class Walker final {
 public:
  Walker(PageHostFactory make_host, demo::AnswerDelay delay)
      : site_(delay),
        translator_({}),
        browsers_(std::move(make_host), flags_, flags_.active_browser_index),
        pages_(browsers_, flags_, [this] { return browsers_.Active(); }, [](const QString&) {}) {
    options_.throttle = false;
    if (QWidget* view = browsers_.Active()->Widget()) {
      view->resize(800, 600);
      view->show();
    }
  }

  Task<> Walk(int way, int steps, WayResult* result) {
    result->way = &WaysOut()[static_cast<size_t>(way)];
    QList<double> times;
    for (int number = 0; number < steps; ++number) {
      co_await Step(way, number, result, &times);
    }
    std::ranges::sort(times);
    result->click_ms = times.isEmpty() ? 0 : times[times.size() / 2];
  }

 private:
  Task<> Step(int way, int number, WayResult* result, QList<double>* times) {
    flags_.SetPageErrorPending(false);
    flags_.SetJobStopRequested(false);
    RunArguments arguments;
    arguments.http_type = QStringLiteral("http://");
    arguments.router_host = QStringLiteral("127.0.0.1:%1").arg(site_.Port());
    ScriptRun run(std::move(arguments));
    RunEnvironment environment{.flags = flags_,
                               .options = options_,
                               .translator = translator_,
                               .log = log_,
                               .browsers = browsers_,
                               .pages = pages_,
                               .browser = [this] { return browsers_.Active(); },
                               .enable_proceed = [](bool) {},
                               .tell_wait = [](const QString&) {}};
    CommandCall call(environment, run);
    ++result->steps;
    run.argument = LeavingSite::PagePath(way, number);
    const auto loaded = co_await FindCommand(u"nav")->flow(call);
    QElapsedTimer clock;
    clock.start();
    const quint64 mark = call.MarkPage();
    co_await call.Ask(page_operation::ClickButton(QStringLiteral("go")));
    const auto clicked = co_await call.AwaitPage(mark, ErrorBlock::kAddress);
    times->append(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    const QJsonValue where =
        co_await call.Ask(page_operation::GetElementValue(QStringLiteral("number")));
    run.argument = LeavingSite::PagePath(way, number + 1);
    const auto left = co_await FindCommand(u"nav")->flow(call);
    result->failed += loaded || clicked || left ? 1 : 0;
    const Leaves leaves = result->way->leaves;
    const int expected = leaves == Leaves::kForNextPage ? number + 1 : number;
    result->early += where.toString().toInt() != expected ? 1 : 0;
    result->lost += leaves != Leaves::kNotAtAll && !site_.WasSaved(way, number + 1) ? 1 : 0;
  }

  LeavingSite site_;
  JobFlags flags_;
  JobOptions options_;
  Translator translator_;
  JobLog log_;
  BrowserSet browsers_;
  PageWait pages_;
};

}  // namespace

Task<> RunStress(PageHostFactory make_host, StressOptions options, QList<WayResult>* results) {
  Walker walker(std::move(make_host), options.delay);
  for (size_t way = 0; way < WaysOut().size(); ++way) {
    WayResult result;
    co_await walker.Walk(static_cast<int>(way), options.steps_per_way, &result);
    results->append(result);
  }
}

}  // namespace quayline::stress
