// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/frm_view_page.h"

#include "ui/job/job_window_texts.h"
#include "ui/job/run_display.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_view_page.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

FrmViewPage::FrmViewPage(AppContext& context, Prompts& prompts, PageHostFactory make_host,
                         QWidget* parent)
    : QDialog(parent),
      context_(context),
      ui_(std::make_unique<Ui::FrmViewPage>()),
      questions_(*this, prompts, context.translator, kPageViewTexts),
      runner_(std::make_unique<PageViewRunner>(context, std::move(make_host), questions_)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  ResizeOnScreen(*this, {1120, 780});
  ui_->upper_splitter->setSizes({760, 320});
  ui_->splitter->setSizes({560, 100});
  ui_->label_entry->setText(Text(message::kLeadingToPage));
  ui_->label_entry->setWordWrap(true);

  display_ = new RunDisplay(*this, *runner_, questions_, context, prompts, kPageViewTexts,
                            RunControls(*ui_));
  connect(runner_.get(), &PageViewRunner::ended, this, &FrmViewPage::ShowEnd);
  connect(ui_->command_stop, &QPushButton::clicked, this, &FrmViewPage::Stop);
  connect(ui_->command_close, &QPushButton::clicked, this, &QDialog::reject);
  runner_->Open();
  display_->ShowOpened();
  timer1_.setSingleShot(true);
  connect(&timer1_, &QTimer::timeout, this, &FrmViewPage::Run);
  timer1_.start(500ms);
}

// The run first: its browsers show themselves in this window's widgets.
FrmViewPage::~FrmViewPage() { runner_.reset(); }

void FrmViewPage::Run() {
  if (context_.session.view_script.isEmpty()) {
    runner_->Stop();
    ui_->label_entry->setText(Text(message::kNoViewScript));
    ui_->command_stop->setEnabled(false);
    return;
  }
  runner_->Run();
}

void FrmViewPage::Stop() {
  timer1_.stop();
  runner_->Stop();
  if (!runner_->IsRunning()) {
    ShowEnd();
  }
}

void FrmViewPage::ShowEnd() {
  const RunEnd end = runner_->End().value_or(RunEnd::kStopped);
  const Message& outcome = end == RunEnd::kPageError ? message::kPageFailed
                           : end == RunEnd::kStopped ? message::kViewStopped
                                                     : message::kPageReached;
  ui_->label_entry->setText(Text(outcome));
  ui_->command_stop->setEnabled(false);
}

// Every way of closing comes through here.
void FrmViewPage::done(int result) {
  timer1_.stop();
  context_.job_flags.SetPageErrorPending(true);
  display_->Leave();
  QDialog::done(result);
}

}  // namespace quayline
