// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/page_view_window.h"

#include <QCloseEvent>

#include "ui/job/job_window_texts.h"
#include "ui/job/run_display.h"
#include "ui/toolkit/theme.h"
#include "ui_page_view_window.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

PageViewWindow::PageViewWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host,
                               QWidget* parent)
    : QDialog(parent),
      context_(context),
      ui_(std::make_unique<Ui::PageViewWindow>()),
      questions_(*this, prompts, context.translator, kRunnerTexts),
      runner_(std::make_unique<PageViewRunner>(context, std::move(make_host), questions_)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  OpenOver(*this, {1120, 780});
  ui_->upper_splitter->setSizes({760, 320});
  ui_->splitter->setSizes({560, 100});
  ui_->headline_label->setText(Text(message::kLeadingToPage));

  display_ = new RunDisplay(*this, *runner_, questions_, context, prompts, kRunnerTexts,
                            RunControls(*ui_));
  connect(runner_.get(), &PageViewRunner::ended, this, &PageViewWindow::ShowEnd);
  connect(ui_->stop_button, &QPushButton::clicked, this, &PageViewWindow::Stop);
  connect(ui_->close_button, &QPushButton::clicked, this, &PageViewWindow::CloseAfterAsking);
  runner_->Open();
  display_->ShowOpened();
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, this, &PageViewWindow::Run);
  start_timer_.start(500ms);
}

// The run is destroyed first: its browsers use this window's widgets.
PageViewWindow::~PageViewWindow() { runner_.reset(); }

void PageViewWindow::Run() {
  if (context_.session.view_script.isEmpty()) {
    runner_->Stop();
    ui_->headline_label->setText(Text(message::kNoViewScript));
    display_->DisableStop();
    return;
  }
  runner_->Run();
}

void PageViewWindow::Stop() {
  start_timer_.stop();
  runner_->Stop();
  if (!runner_->IsRunning()) {
    ShowEnd();
  }
}

void PageViewWindow::ShowEnd() {
  const RunEnd end = runner_->End().value_or(RunEnd::kStopped);
  const Message& outcome = end == RunEnd::kPageError ? message::kScriptEndedByPage
                           : end == RunEnd::kStopped ? message::kViewStopped
                                                     : message::kPageReached;
  ui_->headline_label->setText(Text(outcome));
  display_->DisableStop();
}

void PageViewWindow::CloseAfterAsking() {
  if (runner_->IsRunning()) {
    display_->AskToClose(message::kCloseViewTitle, message::kCloseViewQuestion);
  } else {
    close();
  }
}

void PageViewWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    CloseAfterAsking();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void PageViewWindow::closeEvent(QCloseEvent* event) {
  if (event->spontaneous() && runner_->IsRunning()) {  // the user closes the window by its frame
    event->ignore();
    CloseAfterAsking();
    return;
  }
  QDialog::closeEvent(event);
}

// Called however the window is closed.
void PageViewWindow::done(int result) {
  start_timer_.stop();
  display_->Leave();
  QDialog::done(result);
  setParent(nullptr, windowFlags());  // the window that opened it may go during the last save
}

}  // namespace quayline
