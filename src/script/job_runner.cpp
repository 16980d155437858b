// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_runner.h"

#include <QMetaMethod>
#include <QUrl>

#include "script/interpreter.h"
#include "script/job_texts.h"
#include "script/status_text.h"

namespace quayline {

namespace {

QString Notice(const Translator& translator, const Message& what,
               std::initializer_list<Message> steps) {
  QString text =
      translator.Text(what) + QStringLiteral("\n\n") + translator.Text(job_text::kTrySteps);
  for (const Message& step : steps) {
    text += QLatin1Char('\n') + translator.Text(step);
  }
  return text;
}

}  // namespace

JobRunner::JobRunner(AppContext& context, PageHostFactory make_host, QObject* parent)
    : QObject(parent), context_(context), make_host_(std::move(make_host)) {
  connect(&flow_, &Flow::ended, this, [this] {
    running_ = false;
    Q_EMIT busyChanged(false);
    Q_EMIT ended();
  });
}

JobRunner::~JobRunner() { flow_.Cancel(); }

PageHost* JobRunner::ActiveHost() const { return browsers_ ? browsers_->Active() : nullptr; }

void JobRunner::Open() {
  JobFlags& flags = context_.job_flags;
  browsers_ = std::make_unique<BrowserSet>(make_host_, flags);
  connect(browsers_.get(), &BrowserSet::added, this, &JobRunner::ConnectHost);
  connect(browsers_.get(), &BrowserSet::activeChanged, this, &JobRunner::activeHostChanged);
  ConnectHost(browsers_->Active());
  environment_ = std::make_unique<RunEnvironment>(
      RunEnvironment{.flags = flags,
                     .options = context_.job_options,
                     .translator = context_.translator,
                     .log = log_,
                     .browsers = *browsers_,
                     .browser = [this] { return browsers_->Active(); },
                     .enable_proceed = [this](bool enabled) { Q_EMIT proceedEnabled(enabled); },
                     .tell_wait = [this](const QString& what) { Q_EMIT waitingFor(what); }});

  stopped_by_user_ = false;
  flags.SetJobStopRequested(false);
  flags.job_error_grace = 1;
  flags.SetPageErrorPending(false);
  flags.SetPageLoaded(true);
  flags.in_combo = false;
  flags.SetJobDebugMode(context_.job_options.debug_mode);
  log_.Clear();
  log_.Append(LineBreak() + Text(job_text::kRouter) + QLatin1Char(' ') +
              context_.session.router_name);
  log_.Append(LineBreak() + Text(job_text::kLoadingCommands));
  Q_EMIT errorsCleared();
  Q_EMIT busyChanged(true);
}

void JobRunner::Run() {
  rows_ = context_.port_list.Entries();
  outcome_ = {};
  running_ = true;
  flow_.Start(RunRows());
}

void JobRunner::Stop() {
  stopped_by_user_ = true;
  context_.job_flags.SetJobStopRequested(true);
}

void JobRunner::ProceedToNextCommand() {
  Q_EMIT proceedEnabled(false);
  context_.job_flags.SetPageLoaded(true);
  context_.job_flags.SetJobDebugMode(false);
}

Task<> JobRunner::RunRows() {
  JobFlags& flags = context_.job_flags;
  const auto rows = static_cast<int>(rows_.size());
  Q_EMIT errorsCleared();
  log_.Append(LineBreak() + Text(job_text::kNumberOfForwards) + QStringLiteral(" (%1)").arg(rows));
  log_.Append(LineBreak() + Text(job_text::kRunningCommands) + LineBreak());
  QString computer_name;
  for (int row = 1; row <= rows; ++row) {
    if (flags.JobStopRequested()) {
      outcome_.stopped = true;
      co_return;
    }
    LogRowHead(row);
    GiveLogin();
    RunArguments arguments = ArgumentsOf(row, computer_name);
    computer_name = arguments.entry_computer_name;
    ++outcome_.entries;
    const RunEnd end = co_await RunRouterCommands(*environment_, std::move(arguments));
    outcome_.entries_failed += end == RunEnd::kPageError ? 1 : 0;
    outcome_.stopped = outcome_.stopped || end == RunEnd::kStopped;
    log_.Append(LineBreak() + Text(job_text::kFinishedAdding) + QLatin1Char(' ') +
                rows_[row - 1].app_name + LineBreak());
  }
  const QString rule(19, QLatin1Char('-'));
  log_.Append(LineBreak());
  log_.Append(LineBreak() + rule + Text(job_text::kDone) + rule);
}

void JobRunner::LogRowHead(int row) {
  const PortEntry& entry = rows_[row - 1];
  const QChar blank = QLatin1Char(' ');
  log_.Append(LineBreak() + QLatin1Char('(') + Text(job_text::kCurrent) +
              QStringLiteral(" -  %1/%2)").arg(row).arg(rows_.size()));
  log_.Append(LineBreak() + Text(job_text::kAdding) + blank + entry.app_name +
              QStringLiteral(" (") + entry.protocol + QStringLiteral(") ") +
              Text(job_text::kForPorts) + blank + entry.start_port + QLatin1Char('-') +
              entry.end_port + blank + Text(job_text::kTo) + blank + entry.forwarded_to +
              LineBreak());
  Q_EMIT entryStarted(row, static_cast<int>(rows_.size()), entry.app_name);
}

RunArguments JobRunner::ArgumentsOf(int row, const QString& former_computer_name) const {
  const RouterSession& session = context_.session;
  const PortEntry& entry = rows_[row - 1];
  const qsizetype parenthesis = entry.forwarded_to.indexOf(QLatin1Char('('));
  QString computer_name = former_computer_name;
  if (parenthesis >= 0) {
    computer_name = entry.forwarded_to.mid(parenthesis + 1);
    computer_name.chop(1);
  }
  return {.commands = session.update_script,
          .entry_index = row,
          .is_first_entry = row == 1,
          .is_last_entry = row == rows_.size(),
          .http_type = session.http_type,
          .router_host = RouterHost(session),
          .username = session.username,
          .password = session.password,
          .shown_password = ShownPassword(session),
          .entry_name = entry.app_name,
          .entry_protocol = entry.protocol,
          .entry_start_port = entry.start_port,
          .entry_end_port = entry.end_port,
          .entry_ip = entry.forwarded_to.left(parenthesis),
          .entry_computer_name = computer_name};
}

void JobRunner::GiveLogin() {
  const RouterSession& session = context_.session;
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

void JobRunner::ConnectHost(PageHost* host) {
  JobFlags& flags = context_.job_flags;
  connect(host, &PageHost::navigateError, this, &JobRunner::OnNavigateError);
  connect(host, &PageHost::progressChanged, this, &JobRunner::progressChanged);
  connect(host, &PageHost::statusTextChanged, this, [this, &flags](const QString& text) {
    if (!text.isEmpty() && text != flags.last_router_status) {
      flags.last_router_status = text;
      Q_EMIT statusAppended(Text(job_text::kRouterStatus) + QLatin1Char(' ') + text);
    }
  });
  connect(host, &PageHost::pageMessage, this, &JobRunner::ShowPageMessage);
  connect(host, &PageHost::scriptError, this, [this](const QString& description) {
    if (!context_.job_options.silent_mode) {
      ShowPageMessage(description);
    }
  });
  connect(host, &PageHost::certificateQuestion, this, [this](const auto&... question) {
    if (isSignalConnected(QMetaMethod::fromSignal(&JobRunner::certificateQuestion))) {
      Q_EMIT certificateQuestion(question...);
    } else {
      std::get<2>(std::tie(question...))(false);
    }
  });
  connect(host, &PageHost::loginQuestion, this, [this](const auto&... question) {
    if (isSignalConnected(QMetaMethod::fromSignal(&JobRunner::loginQuestion))) {
      Q_EMIT loginQuestion(question...);
    } else {
      std::get<1>(std::tie(question...))(std::nullopt);
    }
  });
}

// A page that has something to say for ever is heard a few times.
void JobRunner::ShowPageMessage(const QString& text) {
  constexpr int kMaxShown = 5;
  if (++messages_shown_ <= kMaxShown) {
    Q_EMIT noticeRequested(text);
  }
}

void JobRunner::OnNavigateError(const QString& url, int status) {
  JobFlags& flags = context_.job_flags;
  const QString name = StatusText(status);
  const QString with_url = name + QStringLiteral(" (") + url + QLatin1Char(')');
  Q_EMIT errorAppended(Text(job_text::kLastError) + QLatin1Char(' ') + with_url);
  flags.last_page_error = with_url;
  // One error costs the entry, the next one the job. Both flags are set ahead of the wait's look at
  // them, which takes the error first.
  if (flags.job_error_grace == 1) {
    flags.job_error_grace = 0;
    flags.SetPageErrorPending(true);
    if (!stopped_by_user_) {
      flags.SetJobStopRequested(false);
    }
  } else {
    flags.SetPageErrorPending(true);
    flags.SetJobStopRequested(true);
  }
  Q_EMIT busyChanged(false);
  switch (NoticeOfStatus(name)) {
    case StatusNotice::kAccessDenied:
      Q_EMIT noticeRequested(
          Notice(context_.translator, job_text::kAccessDenied,
                 {job_text::kCheckLogin, job_text::kCheckRouterIp, job_text::kLogInByHand}));
      break;
    case StatusNotice::kNotFound:
      Q_EMIT noticeRequested(Notice(
          context_.translator, job_text::kNotFound,
          {job_text::kCheckRouter, job_text::kCheckRouterIpAgain, job_text::kCheckHttpType}));
      break;
    case StatusNotice::kNone:
      break;
  }
}

}  // namespace quayline
