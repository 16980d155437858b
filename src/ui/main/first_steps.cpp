// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/first_steps.h"

#include <QApplication>
#include <QScreen>

#include <chrono>
#include <utility>

#include "core/update_command.h"
#include "ui/main/main_messages.h"

namespace quayline {

using namespace std::chrono_literals;

FirstSteps::FirstSteps(AppContext& context, RouterListModel& routers, RouterSelection& selection,
                       WindowFactory& windows, Prompts& prompts, QWidget* main_window)
    : QObject(main_window),
      context_(context),
      routers_(routers),
      selection_(selection),
      windows_(windows),
      prompts_(prompts),
      main_window_(main_window) {
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, this, &FirstSteps::ShowInTurn);
  connect(&practice_, &PracticeRouter::started, this, &FirstSteps::UsePracticeRouter);
  connect(&practice_, &PracticeRouter::failed, this, [this] {
    EndPractice();
    prompts_.Tell(main_window_, context_.translator.Text(message::kNoPractice));
  });
}

void FirstSteps::ShowAtStart() {
  if (context_.settings.Value(setting::kShowGettingStarted) != QLatin1String("1")) {
    start_timer_.start(1000ms);
  }
}

// A question of the start, such as which language to use, is answered first.
void FirstSteps::ShowInTurn() {
  if (QApplication::activeModalWidget() != nullptr) {
    start_timer_.start(1000ms);
    return;
  }
  const QScreen& screen = *main_window_->screen();
  Frame().MoveSurface({screen.availableGeometry().left(), Frame().Surface().top()});
  Show();
}

SkinFrame& FirstSteps::Frame() const {
  auto* frame = qobject_cast<SkinFrame*>(main_window_->window());
  Q_ASSERT(frame != nullptr);
  return *frame;
}

void FirstSteps::Show() {
  if (window_ != nullptr) {
    window_->raise();
    window_->activateWindow();
    return;
  }
  window_ = new GettingStartedWindow(actions_, context_.settings, context_.translator, &Frame());
  connect(window_, &GettingStartedWindow::practiceWanted, this, &FirstSteps::BeginPractice);
  connect(window_, &GettingStartedWindow::ownRouterWanted, this, &FirstSteps::EndPractice);
  connect(window_, &GettingStartedWindow::helpWanted, this, &FirstSteps::helpWanted);
  connect(window_, &GettingStartedWindow::forumsWanted, this,
          [this] { context_.desktop.OpenInBrowser(context_.maker_site.Forums()); });
  window_->ShowForums(context_.maker_site.Exists());
  if (practice_.IsRunning()) {
    window_->ShowPractice(context_.session.router_ip + u':' + practice_.Port());
  }
  QTimer::singleShot(250ms, window_, [this, window = window_.data()] {
    window->ShowSecondRouter(windows_.HasSecondRouter());
  });
  window_->ShowBeside(Frame());
}

void FirstSteps::Finish() {
  start_timer_.stop();
  practice_.Stop();
  delete window_.data();
}

// A job works with the session that it began with.
void FirstSteps::BeginPractice() {
  if (context_.job_flags.IsRunning()) {
    prompts_.Tell(main_window_, context_.translator.Text(kJobRuns));
    return;
  }
  practice_.Start();
}

void FirstSteps::UsePracticeRouter() {
  const int row = routers_.Find(QLatin1String(PracticeRouter::kName));
  if (row <= 0) {
    practice_.Stop();
    prompts_.Tell(main_window_, context_.translator.Text(message::kNoPractice));
    return;
  }
  own_session_ = context_.session;
  context_.session_store.SetPaused(true);
  selection_.Select(row, routers_.RouterId(row));
  RouterSession& session = context_.session;
  session.router_ip = QStringLiteral("127.0.0.1");
  session.http_port = practice_.Port();
  session.http_type = QStringLiteral("http://");
  session.username = session.password = QLatin1String(PracticeRouter::kLogin);
  if (window_ != nullptr) {
    window_->ShowPractice(session.router_ip + u':' + practice_.Port());
  }
  Q_EMIT sessionChanged();
}

void FirstSteps::EndPractice() {
  practice_.Stop();
  if (window_ != nullptr) {
    window_->ShowPractice({});
  }
  if (!own_session_) {
    return;
  }
  context_.session = *std::exchange(own_session_, std::nullopt);
  context_.session_store.SetPaused(false);
  const int id = context_.session.router_id;
  selection_.Restore(routers_.RowOf(id), id);
  Q_EMIT sessionChanged();
}

}  // namespace quayline
