// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/rule_reader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QScopeGuard>

#include <utility>

#include "script/command_call.h"
#include "script/interpreter.h"
#include "script/page_operations.h"
#include "script/script_line.h"

namespace quayline {

namespace {

// A table of more pages is read in part.
constexpr int kMostPages = 20;

// The flags that scripts leave to the next line. A stop stays a stop.
class KeptFlags final {
 public:
  explicit KeptFlags(JobFlags& flags)
      : flags_(flags),
        url_suffix_(flags.url_suffix),
        in_combo_(flags.in_combo),
        script_timer_ms_(flags.script_timer_ms),
        debug_mode_(flags.JobDebugMode()) {
    flags.SetJobDebugMode(false);
  }
  ~KeptFlags() {
    flags_.url_suffix = url_suffix_;
    flags_.in_combo = in_combo_;
    flags_.script_timer_ms = script_timer_ms_;
    flags_.SetJobDebugMode(debug_mode_);
  }
  KeptFlags(const KeptFlags&) = delete;
  KeptFlags& operator=(const KeptFlags&) = delete;

 private:
  JobFlags& flags_;
  QString url_suffix_;
  bool in_combo_;
  int script_timer_ms_;
  bool debug_mode_;
};

PageCell CellOf(const QJsonObject& cell) {
  const QJsonValue checked = cell[QLatin1String("checked")];
  return {.heading = cell[QLatin1String("heading")].toString(),
          .text = cell[QLatin1String("text")].toString(),
          .checked = checked.isBool() ? std::optional(checked.toBool()) : std::nullopt};
}

bool IsOver(WaitEnd end) { return end == WaitEnd::kStopped || end == WaitEnd::kFailed; }

// Reads the pages of the table, from the one that is there.
class TableReader final {
 public:
  TableReader(RunEnvironment& environment, RunArguments arguments)
      : env_(environment), run_(std::move(arguments)), call_(environment, run_) {}

  Task<std::optional<PageRows>> Read() {
    PageRows page;
    QJsonArray last_rows;
    for (int number = 0; number < kMostPages; ++number) {
      const QJsonObject answer = co_await AskForRows(call_);
      const QJsonArray rows = answer[QLatin1String("rows")].toArray();
      if (call_.Stopped()) {
        co_return std::nullopt;
      }
      // A link that leads nowhere shows the same page again.
      if (number > 0 && rows == last_rows) {
        co_return page;
      }
      AddRows(answer, page);
      last_rows = rows;
      if (!answer[QLatin1String("hasNext")].toBool()) {
        co_return page;
      }
      const bool is_there = co_await OpenNextPage();
      if (!is_there) {
        break;
      }
    }
    page.is_partial = true;
    co_return page;
  }

 private:
  Task<bool> OpenNextPage() {
    const quint64 mark = env_.pages.Mark();
    const QJsonValue opened = co_await call_.AskOnce(page_operation::OpenNextPage());
    if (opened != QLatin1String(page_result::kSuccessful)) {
      co_return false;
    }
    const WaitEnd end =
        co_await env_.pages.UntilIdle({.since = mark, .shown_as = run_.given.router_host});
    co_return !IsOver(end);
  }

  RunEnvironment& env_;
  ScriptRun run_;
  CommandCall call_;
};

}  // namespace

Task<QJsonObject> AskForRows(CommandCall& call) {
  QJsonValue answer = co_await call.AskOnce(page_operation::ReadRows());
  if (call.run.page_has_pending_work) {
    co_await call.env.pages.UntilIdle({.limit = call.env.pages.Limits().missing});
    answer = co_await call.AskOnce(page_operation::ReadRows());
  }
  co_return answer.toObject();
}

void AddRows(const QJsonObject& answer, PageRows& page) {
  for (const QJsonValue& row : answer[QLatin1String("rows")].toArray()) {
    PageRow read{.cells = {},
                 .title = row[QLatin1String("title")].toString(),
                 .is_form = row[QLatin1String("form")].toBool()};
    for (const QJsonValue& cell : row[QLatin1String("cells")].toArray()) {
      read.cells.append(CellOf(cell.toObject()));
    }
    page.rows.append(read);
  }
  for (const QJsonValue& headings : answer[QLatin1String("headings")].toArray()) {
    QStringList texts;
    for (const QJsonValue& heading : headings.toArray()) {
      texts.append(heading.toString());
    }
    page.headings.append(texts);
  }
  page.is_partial = page.is_partial || answer[QLatin1String("isPartial")].toBool();
}

QStringList LinesToRules(const RouterSession& session) {
  if (!session.view_script.isEmpty()) {
    return session.view_script;
  }
  QStringList lines;
  for (const QString& line : session.update_script) {
    lines.append(line);
    if (ParseScriptLine(line).name.startsWith(QLatin1String("nav"))) {
      return lines;
    }
  }
  return {};
}

Task<std::optional<PageRows>> ReadRules(RunEnvironment& job, RunArguments arguments) {
  const KeptFlags kept(job.flags);
  JobLog unseen;
  const JobOptions options{
      .silent_mode = job.options.silent_mode, .throttle = false, .debug_mode = false};
  RunEnvironment environment{.flags = job.flags,
                             .options = options,
                             .translator = job.translator,
                             .log = unseen,
                             .browsers = job.browsers,
                             .pages = job.pages,
                             .browser = job.browser,
                             .enable_proceed = [](bool) {},
                             .tell_wait = job.tell_wait,
                             .show_status = [](const QString&) {}};
  if (arguments.commands.isEmpty()) {
    co_return std::nullopt;
  }
  const RunEnd end = co_await RunRouterCommands(environment, arguments);
  if (end != RunEnd::kAllLinesDone) {
    job.flags.SetPageErrorPending(false);
    co_return std::nullopt;
  }
  TableReader reader(environment, std::move(arguments));
  std::optional<PageRows> page = co_await reader.Read();
  job.flags.SetPageErrorPending(false);
  co_return page;
}

}  // namespace quayline
