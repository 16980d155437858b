// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/interpreter.h"

#include <utility>

#include "async/wait.h"
#include "script/command_table.h"
#include "script/complaint_watch.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kThrottle(500);
constexpr int kMaxSettleRounds = 5;
constexpr qsizetype kLongestComplaint = 200;
constexpr qsizetype kMostComplaints = 5;

// One pass over the lines of a script.
class Interpreter final {
 public:
  Interpreter(RunEnvironment& environment, RunArguments arguments)
      : env_(environment), run_(std::move(arguments)), call_(environment, run_) {}

  Task<RunEnd> Run();

 private:
  Task<std::optional<RunEnd>> RunLines();
  Task<std::optional<RunEnd>> RunLine(int index);
  Task<> ReadComplaints();
  Task<bool> Settle();
  Task<std::optional<RunEnd>> FollowPage(bool needs_idle);
  Task<std::optional<RunEnd>> RunCommand(const CommandRow& row);
  Task<> ShowNearestNames(const CommandRow& row);
  Task<bool> DebugPause();
  bool Stopped() const { return env_.flags.JobStopRequested(); }

  // What the line before has set on the page.
  struct SetBox {
    quint64 mark = 0;  // taken before it
    QString argument;  // of that line
    bool is_choice = false;
  };

  RunEnvironment& env_;
  ScriptRun run_;
  CommandCall call_;
  std::optional<SetBox> box_;
  ComplaintWatch complaints_;
  // The page as its complaints were read last.
  std::optional<quint64> read_page_;
  QString read_state_;
};

Task<RunEnd> Interpreter::Run() {
  if (Stopped()) {
    co_return RunEnd::kStopped;
  }
  call_.LogLine(call_.Text(script_text::kRunning));
  call_.LogLine(LogSeparator());
  const std::optional<RunEnd> end = co_await RunLines();
  if (!Stopped() && end != RunEnd::kPageError) {
    // Asked for, since a text in a frame leaves the state of the top document as it was.
    read_page_.reset();
    run_.complaints.reset();
    co_await ReadComplaints();
  }
  for (const QString& text : complaints_.Found().mid(0, kMostComplaints)) {
    env_.complaints.append(OnOneLine(text.left(kLongestComplaint)));
  }
  if (end) {
    co_return *end;
  }
  call_.LogLine(LogSeparator());
  env_.log.Append(LineBreak());
  co_return RunEnd::kAllLinesDone;
}

Task<std::optional<RunEnd>> Interpreter::RunLines() {
  for (int index = 0; index < run_.given.commands.size(); ++index) {
    if (const std::optional<RunEnd> end = co_await RunLine(index)) {
      co_return end;
    }
  }
  co_return co_await FollowPage(true);
}

// Before each line, where the page may have changed since the line before.
Task<> Interpreter::ReadComplaints() {
  const quint64 page = call_.MarkPage();
  if (page == read_page_ && run_.markup_state == read_state_) {
    co_return;
  }
  const auto& known = run_.complaints;
  if (known && known->page == page && known->markup_state == run_.markup_state) {
    complaints_.Take(known->texts, page, run_.inputs);
  } else {
    const QJsonValue answer = co_await call_.AskOnce(page_operation::ReadComplaints());
    complaints_.Take(answer.toVariant().toStringList(), page, run_.inputs);
  }
  read_page_ = page;
  read_state_ = run_.markup_state;
}

Task<std::optional<RunEnd>> Interpreter::RunLine(int index) {
  const QString& raw_line = run_.given.commands[index];
  const ScriptLine line = ParseScriptLine(raw_line);
  run_.argument = line.argument;
  const bool settled = co_await Settle();
  if (!settled) {
    co_return RunEnd::kStopped;
  }
  co_await ReadComplaints();
  const CommandRow* row = FindCommand(line.name);
  if (const std::optional<RunEnd> end = co_await FollowPage(row != nullptr && row->awaits_page)) {
    co_return end;
  }
  env_.show_step(index + 1, static_cast<int>(run_.given.commands.size()));
  call_.LogLine(call_.Text(script_text::kStep) +
                QStringLiteral(" %1. ").arg(index + 1, 2, 10, QLatin1Char('0')) + raw_line);
  if (row != nullptr && ConditionHolds(row->condition, run_.given, env_.flags.in_combo)) {
    const std::optional<RunEnd> end = co_await RunCommand(*row);
    if (end) {
      co_return end;
    }
    co_await ShowNearestNames(*row);
  }
  const bool proceeded = co_await DebugPause();
  if (!proceeded) {
    co_return RunEnd::kStopped;
  }
  if (env_.options.debug_mode) {
    env_.enable_proceed(true);
    env_.flags.SetJobDebugMode(true);
  }
  if (env_.options.throttle) {
    co_return co_await call_.Wait(static_cast<int>(kThrottle.count()), std::nullopt);
  }
  co_return std::nullopt;
}

// Lets a page that still rewrites itself finish before a command touches it. The answer to the line
// before is the first look. A wait for the page has looked twice, and so has the line before if it
// did not use the page.
Task<bool> Interpreter::Settle() {
  if (run_.is_settled) {
    co_return !Stopped();
  }
  QString before = run_.markup_state;
  for (int round = 0;; ++round) {
    const QJsonValue state = co_await call_.Ask(page_operation::ReadMarkupState());
    if (Stopped()) {
      co_return false;
    }
    if (state.toString() == before || round == kMaxSettleRounds) {
      run_.is_settled = true;
      co_return true;
    }
    before = state.toString();
  }
}

// Setting a box may start something on the page: a choice loads another form, and a button is
// enabled when the page has checked what was typed. The next line is for the page that this leads
// to. An error of that page is reported with the line that set the box. `needs_idle`: the next line
// is a user action, or the script ends.
Task<std::optional<RunEnd>> Interpreter::FollowPage(bool needs_idle) {
  const bool has_failed = box_ && env_.flags.PageErrorPending();
  const SetBox box = std::exchange(box_, std::nullopt)
                         .value_or(SetBox{.mark = call_.MarkPage(), .argument = run_.argument});
  const bool has_left = box.mark != call_.MarkPage() || has_failed;
  if (!has_left && !(run_.page_has_pending_work && (needs_idle || box.is_choice))) {
    co_return std::nullopt;
  }
  const QString argument = std::exchange(run_.argument, box.argument);
  const std::optional<RunEnd> end = co_await call_.AwaitPage(box.mark, ErrorBlock::kAddress);
  run_.argument = argument;
  co_return end;
}

// A name that was not found is most often misspelt.
Task<> Interpreter::ShowNearestNames(const CommandRow& row) {
  const bool is_named = !row.fields.empty() && row.fields.front().kind == FieldKind::kElementName;
  if (is_named && !run_.was_found) {
    co_await call_.ShowNearestNames(run_.argument);
  }
}

Task<std::optional<RunEnd>> Interpreter::RunCommand(const CommandRow& row) {
  ReadArgument(row, run_);
  run_.was_found = true;
  if (row.flow != nullptr) {
    co_return co_await row.flow(call_);
  }
  const std::optional<PageCall> question = row.ask(call_);
  if (!question) {
    co_return std::nullopt;
  }
  const quint64 mark = call_.MarkPage();
  const QJsonValue result = co_await call_.Ask(*question);
  if (Stopped() && !(row.awaits_page && env_.flags.PageErrorPending())) {
    co_return RunEnd::kStopped;
  }
  call_.LogResult(result);
  if (row.awaits_page) {
    co_return co_await call_.AwaitPage(mark, ErrorBlock::kAddress);
  }
  box_ = SetBox{.mark = mark,
                .argument = run_.argument,
                .is_choice = question->kind == PageCallKind::kChoice};
  co_return std::nullopt;
}

// The pause that was requested after the line before. False: the job was stopped during it.
Task<bool> Interpreter::DebugPause() {
  if (!env_.flags.JobDebugMode()) {
    co_return true;
  }
  const QString rule = QStringLiteral("-------");
  call_.LogLine(rule + call_.Text(script_text::kClickProceed) + rule);
  env_.log.Append(LineBreak());
  env_.enable_proceed(true);
  JobFlags& flags = env_.flags;
  env_.is_paused = true;
  co_await Until([&flags] {
    return !flags.JobDebugMode() || flags.JobStopRequested();
  }).WokenBy(&flags, &JobFlags::changed);
  env_.is_paused = false;
  run_.is_settled = false;
  co_return !flags.JobStopRequested();
}

}  // namespace

Task<RunEnd> RunRouterCommands(RunEnvironment& environment, RunArguments arguments) {
  Interpreter interpreter(environment, std::move(arguments));
  co_return co_await interpreter.Run();
}

}  // namespace quayline
