// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_runner.h"

#include <QDeadlineTimer>
#include <QScopeGuard>
#include <QUrl>

#include "async/wait.h"
#include "core/foreign_scripts.h"
#include "core/text_bytes.h"
#include "script/foreign_script.h"
#include "script/script_texts.h"
#include "script/status_text.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// Nothing signals that another program has let go of the router.
constexpr auto kLockPoll = 250ms;

}  // namespace

ScriptRunner::ScriptRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
                           const RunnerTexts& texts, int& active_index, QObject* parent)
    : QObject(parent),
      context_(context),
      make_host_(std::move(make_host)),
      questions_(questions),
      texts_(texts),
      active_index_(active_index) {
  connect(&flow_, &Flow::ended, this, [this] {
    EndRun();
    Q_EMIT busyChanged(false);
    Q_EMIT ended();
  });
}

ScriptRunner::~ScriptRunner() {
  flow_.Cancel();
  if (HoldsFlags()) {
    context_.job_flags.is_running = false;
  }
}

bool ScriptRunner::HoldsFlags() const { return browsers_ != nullptr && browsers_->HoldsFlags(); }

void ScriptRunner::LetFlagsGo() {
  if (HoldsFlags()) {
    context_.job_flags.is_running = false;
    browsers_->LetFlagsGo();
  }
}

void ScriptRunner::HandOver() { browsers_->HandOver(); }

PageHost* ScriptRunner::ActiveHost() const { return browsers_ ? browsers_->Active() : nullptr; }

void ScriptRunner::OpenBrowsers(std::function<PageHost*(const BrowserSet&)> driven) {
  JobFlags& flags = context_.job_flags;
  KeepUntilSaved();
  browsers_ = std::make_unique<BrowserSet>(make_host_, *this, flags, active_index_);
  connect(browsers_.get(), &BrowserSet::added, this, &ScriptRunner::ConnectHost);
  connect(browsers_.get(), &BrowserSet::activeChanged, this, &ScriptRunner::activeHostChanged);
  connect(browsers_.get(), &BrowserSet::navigationChanged, this, &ScriptRunner::UnlockWhenIdle);
  ConnectHost(browsers_->Active());
  const auto browser = [set = browsers_.get(), choose = std::move(driven)] { return choose(*set); };
  const auto show_wait = [this](const QString& what) { Q_EMIT waitingFor(what); };
  pages_ = std::make_unique<PageWait>(*browsers_, flags, browser, show_wait);
  environment_ = std::make_unique<RunEnvironment>(RunEnvironment{
      .flags = flags,
      .options = context_.job_options,
      .translator = context_.translator,
      .log = log_,
      .browsers = *browsers_,
      .pages = *pages_,
      .browser = browser,
      .enable_proceed = [this](bool enabled) { Q_EMIT proceedEnabled(enabled); },
      .tell_wait = show_wait,
      .show_status =
          [this](const QString& text) { Q_EMIT statusAppended(text, StatusKind::kNotable); },
      .show_step = [this](int step, int steps) { Q_EMIT stepStarted(step, steps); }});

  stopped_by_user_ = false;
  messages_shown_ = 0;
  notices_shown_.clear();
  page_faults_ = 0;
  flags.is_running = true;
  flags.SetJobStopRequested(false);
  flags.SetPageErrorPending(false);
  flags.SetPageLoaded(true);
  flags.SetJobDebugMode(context_.job_options.debug_mode);
  log_.Clear();
}

void ScriptRunner::StartRun(Task<> run) {
  running_ = true;
  has_run_ = true;
  context_.job_flags.is_running = true;
  browsers_->TakeFlags();
  flow_.Start(RunWhenFree(std::move(run)));
}

// A router serves one run at a time, and the run before may still have a save under way.
Task<> ScriptRunner::RunWhenFree(Task<> run) {
  JobFlags& flags = context_.job_flags;
  const auto is_free = [&flags] { return flags.LeavingRuns() == 0 || flags.JobStopRequested(); };
  if (!is_free()) {
    Q_EMIT waitingFor(RouterHost(Router()));
    co_await Until(is_free).WokenBy(&flags, &JobFlags::changed);
    Q_EMIT waitingFor({});
  }
  co_await AwaitPermission();
  co_await LockRouter();
  co_await std::move(run);
}

// A script that cannot be looked up, because the databases are being updated or its row is gone,
// is refused as well: the user cannot have seen it.
Task<> ScriptRunner::AwaitPermission() {
  const int router_id = Router().router_id;
  ForeignScripts scripts(context_.program_folder);
  const auto origin = scripts.OriginOf(router_id);
  is_confined_ = origin && !origin->IsSigned();
  if (!origin) {
    co_return;
  }
  bool is_allowed = false;
  if (const auto router = context_.databases.FindRouter(router_id)) {
    is_allowed = scripts.IsAllowed(*router);
    if (!is_allowed) {
      is_allowed = co_await AskUser(DescribeScripts(*router, *origin));
      if (is_allowed) {
        scripts.Allow(*router);
      }
    }
  }
  if (!is_allowed) {
    log_.Append(LineBreak() + Text(script_text::kForeignScriptRefused));
    Stop();
  }
}

Task<bool> ScriptRunner::AskUser(ForeignScript script) {
  OneShot<bool> answer;
  questions_.AskForeignScript(script, answer.Callback());
  JobFlags& flags = context_.job_flags;
  answer.GiveUpWhen(&flags, &JobFlags::changed, [&flags] { return flags.JobStopRequested(); });
  const std::optional<bool> is_allowed = co_await answer;
  co_return is_allowed.value_or(false);
}

Task<> ScriptRunner::LockRouter() {
  JobFlags& flags = context_.job_flags;
  const QString router = RouterKey(Router());
  router_lock_ = context_.router_locks.TryTake(router);
  if (router_lock_ != nullptr) {
    co_return;
  }
  Q_EMIT waitingFor(Text(texts_.other_program).arg(RouterHost(Router())));
  while (router_lock_ == nullptr && !flags.JobStopRequested()) {
    co_await Until([&flags] { return flags.JobStopRequested(); })
        .WokenBy(&flags, &JobFlags::changed)
        .AtMost(kLockPoll);
    router_lock_ = context_.router_locks.TryTake(router);
  }
  Q_EMIT waitingFor({});
}

void ScriptRunner::EndRun() {
  running_ = false;
  // The window stays, and its pages may still load: what they do is no business of the next run.
  LetFlagsGo();
  UnlockWhenIdle();
}

void ScriptRunner::UnlockWhenIdle() {
  if (!running_ && !leaving_.IsRunning() && old_pages_.empty() && !browsers_->Navigation().busy) {
    router_lock_.reset();
  }
}

void ScriptRunner::Stop() {
  stopped_by_user_ = true;
  if (HoldsFlags()) {
    context_.job_flags.is_running = running_;
    context_.job_flags.SetJobStopRequested(true);
  }
  if (browsers_) {
    browsers_->ReportStop();
  }
  if (!running_) {
    LetFlagsGo();
  }
}

void ScriptRunner::Leave() {
  left_during_run_ = left_during_run_ || running_;
  if (HoldsFlags()) {
    context_.job_flags.SetPageErrorPending(true);
  }
  Stop();
  if (!has_run_) {
    Q_EMIT left();
    return;
  }
  // The next run may begin before this one would have noticed the stop.
  flow_.Cancel();
  leaving_.Start(LeavePages());
  EndRun();
}

Task<> ScriptRunner::LeavePages() {
  co_await FinishSaves(*browsers_, *pages_);
  co_await Until([this] { return old_pages_.empty(); }).WokenBy(this, &ScriptRunner::oldPagesGone);
  Q_EMIT left();
}

// What these pages report is not about the next run.
void ScriptRunner::KeepUntilSaved() {
  environment_.reset();
  if (browsers_ == nullptr || !browsers_->MaySave()) {
    pages_.reset();
    browsers_.reset();
    return;
  }
  browsers_->LetFlagsGo();
  browsers_->disconnect(this);
  for (PageHost* host : browsers_->findChildren<PageHost*>(Qt::FindDirectChildrenOnly)) {
    host->disconnect(this);
  }
  auto old = std::make_unique<OldPages>();
  old->browsers = std::move(browsers_);
  old->pages = std::move(pages_);
  connect(&old->flow, &Flow::ended, this, [this, ended = old.get()] {
    std::erase_if(old_pages_, [ended](const auto& each) { return each.get() == ended; });
    UnlockWhenIdle();
    Q_EMIT oldPagesGone();
  });
  old_pages_.push_back(std::move(old));
  OldPages& kept = *old_pages_.back();
  kept.flow.Start(FinishSaves(*kept.browsers, *kept.pages));
}

// A page that was only opened is left at once. One that was acted on may have a save under way, and
// is left when it is idle, and soon where no request that may be a save is under way; one that
// gives no answer, when its navigation has ended.
Task<> ScriptRunner::FinishSaves(BrowserSet& browsers, PageWait& pages) {
  JobFlags& flags = context_.job_flags;
  flags.AddLeavingRuns(1);
  const auto gone = qScopeGuard([&flags] { flags.AddLeavingRuns(-1); });
  // The engine's call that asked would return to a page that is gone.
  co_await Until([this] {
    return dialogs_open_ == 0;
  }).WokenBy(this, &ScriptRunner::dialogAnswered);
  if (!browsers.MaySave()) {
    browsers.StopNavigation();
  } else {
    const WaitLimits& limits = pages.Limits();
    const QDeadlineTimer any_work(limits.work_after_stop);
    WaitScope scope{.shown_as = RouterHost(Router()), .heeds_flags = false};
    scope.asks_page = co_await pages.Answers(limits.silence_after_stop);
    scope.limit = WaitLimits::Time(any_work.remainingTime());
    const WaitEnd end = co_await pages.UntilIdle(scope);
    if (end == WaitEnd::kPending) {
      scope.work = PendingWork::kSaves;
      scope.limit = flags.ends_by_signal ? std::nullopt : std::optional(limits.after_stop);
      co_await pages.UntilIdle(scope);
    }
  }
}

void ScriptRunner::ProceedToNextCommand() {
  Q_EMIT proceedEnabled(false);
  context_.job_flags.SetPageLoaded(true);
  context_.job_flags.SetJobDebugMode(false);
}

RunArguments ScriptRunner::RouterArguments() const {
  const RouterSession& session = Router();
  return {.http_type = session.http_type,
          .router_host = RouterHost(session),
          .username = session.username,
          .password = session.password,
          .shown_password = ShownPassword(session)};
}

void ScriptRunner::GiveLogin() {
  const RouterSession& session = Router();
  const QUrl address(session.http_type + RouterHost(session));
  constexpr int kHttpPort = 80;
  constexpr int kHttpsPort = 443;
  const int default_port = address.scheme() == QLatin1String("https") ? kHttpsPort : kHttpPort;
  browsers_->Active()->SetLogin({.scheme = address.scheme(),
                                 .host = address.host(),
                                 .port = address.port(default_port),
                                 .username = session.username,
                                 .password = session.password});
}

void ScriptRunner::ConnectHost(PageHost* host) {
  JobFlags& flags = context_.job_flags;
  connect(host, &PageHost::navigateError, this, &ScriptRunner::OnNavigateError);
  connect(host, &PageHost::progressChanged, this, &ScriptRunner::progressChanged);
  connect(host, &PageHost::statusTextChanged, this,
          [this, &flags](const QString& text, StatusKind kind) {
            if (!text.isEmpty() && text != flags.last_router_status) {
              flags.last_router_status = text;
              Q_EMIT statusAppended(Text(texts_.router_status) + QLatin1Char(' ') + text, kind);
            }
          });
  connect(host, &PageHost::noted, this, [this](const QString& text) {
    if (LogsPages()) {
      log_.Append(LineBreak() + OnOneLine(text));
    }
  });
  connect(host, &PageHost::pageMessage, this, &ScriptRunner::ShowPageMessage);
  connect(host, &PageHost::resourceFailed, this,
          [this](const QString& url) { NotePageFault(script_text::kResourceFailed, url); });
  connect(host, &PageHost::scriptError, this,
          [this](const QString& description, const QString&, int, bool is_answered) {
            if (is_answered) {
              ++page_faults_;  // logged by the line that ran the script
            } else {
              NotePageFault(script_text::kPageScriptFailed, description);
            }
            if (!context_.job_options.silent_mode) {
              ShowPageMessage(description);
            }
          });
}

void ScriptRunner::AskForeignScript(const ForeignScript& script,
                                    std::function<void(bool allowed)> answer) {
  questions_.AskForeignScript(script, std::move(answer));
}

void ScriptRunner::AskCertificate(const ShownCertificate& shown,
                                  std::function<void(bool trusted)> answer) {
  questions_.AskCertificate(shown, std::move(answer));
}

void ScriptRunner::AskLogin(const QString& address,
                            std::function<void(std::optional<TypedLogin>)> answer) {
  questions_.AskLogin(address, std::move(answer));
}

void ScriptRunner::AskOtherAddress(const OtherAddress& other,
                                   std::function<void(bool allowed)> answer) {
  if (is_confined_) {
    log_.Append(LineBreak() + Text(script_text::kOtherHostBlocked).arg(OnOneLine(other.target)));
    answer(false);
    return;
  }
  questions_.AskOtherAddress(other, std::move(answer));
}

std::optional<PageDialogAnswer> ScriptRunner::AnswerDialog(const PageDialog& dialog) {
  const bool is_working = running_ && !environment_->is_paused;
  if (is_working || left_during_run_) {
    constexpr qsizetype kMostWords = 5;
    constexpr qsizetype kLongest = 200;
    if (page_words_.size() < kMostWords) {
      page_words_.append(OnOneLine(dialog.text.left(kLongest)));
    }
    return std::nullopt;
  }
  ++dialogs_open_;
  const auto answered = qScopeGuard([this] {
    --dialogs_open_;
    Q_EMIT dialogAnswered();
  });
  return questions_.AnswerDialog(dialog);
}

// A page whose script failed may have sent the rules without the new one. One that fails for ever
// is noted a few times.
void ScriptRunner::NotePageFault(const Message& fault, const QString& detail) {
  constexpr int kMaxNoted = 20;
  if (LogsPages() && ++page_faults_ <= kMaxNoted) {
    log_.Append(LineBreak() + Text(fault).arg(OnOneLine(detail)));
  }
}

// A page that has something to say for ever is heard a few times.
void ScriptRunner::ShowPageMessage(const QString& text) {
  constexpr int kMaxShown = 5;
  if (++messages_shown_ <= kMaxShown) {
    Q_EMIT noticeRequested(text);
  }
}

void ScriptRunner::OnNavigateError(const QString& url, int status) {
  const QString name = StatusText(status);
  const QString with_url = name + QStringLiteral(" (") + OnOneLine(url) + QLatin1Char(')');
  Q_EMIT errorAppended(Text(texts_.last_error) + QLatin1Char(' ') + with_url);
  if (HoldsFlags()) {
    context_.job_flags.last_page_error = with_url;
    // Ahead of a stop that the error may cost: a wait that sees both takes the error first.
    context_.job_flags.SetPageErrorPending(true);
    CountError();
  }
  Q_EMIT busyChanged(false);
  const StatusNotice notice = NoticeOfStatus(name);
  if (notices_shown_.contains(notice)) {
    return;
  }
  notices_shown_.append(notice);
  switch (notice) {
    case StatusNotice::kAccessDenied:
      Q_EMIT noticeRequested(
          Notice(texts_.access_denied,
                 {texts_.check_login, texts_.check_router_ip, texts_.log_in_by_hand}));
      break;
    case StatusNotice::kNotFound:
      Q_EMIT noticeRequested(
          Notice(texts_.not_found,
                 {texts_.check_router, texts_.check_router_ip_again, texts_.check_http_type}));
      break;
    case StatusNotice::kNone:
      break;
  }
}

QString ScriptRunner::Notice(const Message& what, std::initializer_list<Message> steps) const {
  QString text = Text(what) + QStringLiteral("\n\n") + Text(texts_.try_steps);
  for (const Message& step : steps) {
    text += QLatin1Char('\n') + Text(step);
  }
  return text;
}

}  // namespace quayline
