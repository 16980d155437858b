// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_runner.h"

#include <QUrl>

#include "async/wait.h"
#include "core/text_bytes.h"
#include "script/script_texts.h"

namespace quayline {

ScriptRunner::ScriptRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
                           const RunnerTexts& texts, int& active_index, QObject* parent)
    : QObject(parent),
      context_(context),
      make_host_(std::move(make_host)),
      questions_(questions),
      active_index_(active_index),
      admission_(context, questions, texts),
      reports_(context, log_, texts, [this] { return LogsPages(); }),
      unfinished_(context.job_flags) {
  connect(&admission_, &RunAdmission::waitingFor, this, &ScriptRunner::waitingFor);
  connect(&reports_, &PageReports::statusAppended, this, &ScriptRunner::statusAppended);
  connect(&reports_, &PageReports::errorAppended, this, &ScriptRunner::errorAppended);
  connect(&reports_, &PageReports::noticeRequested, this, &ScriptRunner::noticeRequested);
  connect(&unfinished_, &UnfinishedPages::gone, this, &ScriptRunner::UnlockWhenIdle);
  connect(&flow_, &Flow::ended, this, [this] {
    EndRun();
    Q_EMIT busyChanged(false);
    Q_EMIT ended();
  });
}

ScriptRunner::~ScriptRunner() {
  flow_.Cancel();
  if (HoldsFlags()) {
    context_.job_flags.SetRunning(false);
  }
}

bool ScriptRunner::HoldsFlags() const { return browsers_ != nullptr && browsers_->HoldsFlags(); }

void ScriptRunner::LetFlagsGo() {
  if (HoldsFlags()) {
    context_.job_flags.SetRunning(false);
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
      .show_step = [this](int step, int steps) { Q_EMIT stepStarted(step, steps); },
      .note_action = [this] { NoteAction(); }});

  stopped_by_user_ = false;
  reports_.Forget();
  flags.SetRunning(true);
  flags.SetJobStopRequested(false);
  flags.SetPageErrorPending(false);
  flags.SetPageLoaded(true);
  flags.SetJobDebugMode(context_.job_options.debug_mode);
  log_.Clear();
}

void ScriptRunner::StartRun(Task<> run) {
  running_ = true;
  has_run_ = true;
  context_.job_flags.SetRunning(true);
  browsers_->TakeFlags();
  flow_.Start(RunWhenFree(std::move(run)));
}

Task<> ScriptRunner::RunWhenFree(Task<> run) {
  co_await admission_.AwaitOtherRuns(RouterHost(Router()));
  const bool is_allowed = co_await admission_.AskPermission(Router().router_id);
  if (!is_allowed) {
    log_.Append(LineBreak() + Text(script_text::kForeignScriptRefused));
    Stop();
  }
  co_await admission_.LockRouter(Router());
  co_await std::move(run);
}

void ScriptRunner::EndRun() {
  running_ = false;
  // The window stays, and its pages may still load: what they do is no business of the next run.
  LetFlagsGo();
  UnlockWhenIdle();
}

void ScriptRunner::UnlockWhenIdle() {
  if (!running_ && !leaving_.IsRunning() && unfinished_.IsEmpty() &&
      !browsers_->Navigation().busy) {
    admission_.Unlock();
  }
}

void ScriptRunner::Stop() {
  stopped_by_user_ = true;
  if (HoldsFlags()) {
    context_.job_flags.SetRunning(running_);
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
  co_await unfinished_.FinishSaves(*browsers_, *pages_, RouterHost(Router()));
  co_await Until([this] {
    return unfinished_.IsEmpty();
  }).WokenBy(&unfinished_, &UnfinishedPages::gone);
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
  unfinished_.Keep(std::move(browsers_), std::move(pages_), RouterHost(Router()));
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
  connect(host, &PageHost::navigateError, this, &ScriptRunner::OnNavigateError);
  connect(host, &PageHost::progressChanged, this, &ScriptRunner::progressChanged);
  reports_.Follow(host);
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
  if (admission_.IsConfined()) {
    log_.Append(LineBreak() + Text(script_text::kOtherHostBlocked).arg(OnOneLine(other.target)));
    answer(false);
    return;
  }
  questions_.AskOtherAddress(other, std::move(answer));
}

std::optional<PageDialogAnswer> ScriptRunner::AnswerDialog(const PageDialog& dialog) {
  const bool is_working = running_ && !environment_->is_paused;
  if (is_working || left_during_run_) {
    reports_.NoteWords(dialog.text);
    return std::nullopt;
  }
  return unfinished_.DuringDialog([this, &dialog] { return questions_.AnswerDialog(dialog); });
}

void ScriptRunner::OnNavigateError(const QString& url, int status) {
  const QString error = reports_.NoteError(url, status);
  if (HoldsFlags()) {
    context_.job_flags.last_page_error = error;
    // Before a stop that the error may cause: a wait that sees both takes the error first.
    context_.job_flags.SetPageErrorPending(true);
    CountError();
  }
  Q_EMIT busyChanged(false);
  reports_.Advise(status);
}

}  // namespace quayline
