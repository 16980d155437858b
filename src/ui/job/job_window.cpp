// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>

#include "core/save_file.h"
#include "ui/job/follow_up_jobs.h"
#include "ui/job/job_progress.h"
#include "ui/job/job_window_texts.h"
#include "ui/job/outcome_text.h"
#include "ui/job/result_texts.h"
#include "ui/job/run_display.h"
#include "ui/toolkit/enter_key.h"
#include "ui/toolkit/theme.h"
#include "ui_job_window.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr QSize kSize(760, 480);
constexpr QSize kSizeWithDetails(1120, 780);
constexpr int kListHeightWithDetails = 150;

RunControls ControlsOf(const Ui::JobWindow& form) {
  RunControls controls(form);
  controls.rest = form.entries_view;  // the log may be closed
  return controls;
}

}  // namespace

JobWindow::JobWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host, JobKind kind)
    : context_(context),
      prompts_(prompts),
      kind_(kind),
      ui_(std::make_unique<Ui::JobWindow>()),
      report_head_({.router_name = context.session.router_name,
                    .router_host = context.session.router_ip,
                    .http_type = context.session.http_type}),
      questions_(*this, prompts, context.translator, kRunnerTexts),
      runner_(std::make_unique<JobRunner>(context, std::move(make_host), questions_)),
      entry_states_(context.translator),
      looks_(context, entry_states_) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  const bool has_details =
      context.settings.Boolean(setting::kJobDetails) || context.job_options.debug_mode;
  ShowDetails(has_details);
  OpenOver(*this, has_details ? kSizeWithDetails : kSize);
  ui_->upper_splitter->setSizes({690, 400});
  ui_->splitter->setSizes({500, 120});
  QFont title = ui_->headline_label->font();
  title.setBold(true);
  ui_->headline_label->setFont(title);

  progress_ =
      new JobProgress(*ui_, *runner_, entry_states_, context.translator,
                      kind == JobKind::kCheck ? message::kCheckTitle : message::kJobTitle, *this);
  follow_ups_ = new FollowUpJobs(context, prompts, *runner_, *this);
  display_ =
      new RunDisplay(*this, *runner_, questions_, context, prompts, kRunnerTexts, ControlsOf(*ui_));
  ConnectEntries();
  ConnectButtons();
  connect(runner_.get(), &JobRunner::ended, this, &JobWindow::ShowEnd);
  runner_->Open();
  report_head_.engine = runner_->ActiveHost()->EngineVersion();
  display_->ShowOpened();
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, runner_.get(),
          kind == JobKind::kCheck ? &JobRunner::Check : &JobRunner::Run);
  start_timer_.start(500ms);
}

void JobWindow::ConnectEntries() {
  entry_states_.Begin(kind_, context_.port_list.Entries());
  ui_->entries_view->Follow(entry_states_);
  looks_.Show();
  connect(runner_.get(), &JobRunner::begun, this, [this] {
    entry_states_.Begin(runner_->Outcome().kind, runner_->Rows());
    looks_.Show();
  });
  connect(runner_.get(), &JobRunner::entryStarted, this, &JobWindow::NoteLogin);
  connect(runner_.get(), &JobRunner::lookStarted, this, &JobWindow::NoteLogin);
}

void JobWindow::ConnectButtons() {
  connect(ui_->details_button, &QPushButton::clicked, this, [this](bool open) {
    ShowDetails(open);
    context_.settings.SetBoolean(setting::kJobDetails, open);
  });
  // Debug mode may begin during the job: its pauses are about the page.
  connect(runner_.get(), &JobRunner::proceedEnabled, this, [this](bool enabled) {
    if (enabled && !ui_->details_area->IsOpen()) {
      ShowDetails(true);
    }
  });
  connect(ui_->stop_button, &QPushButton::clicked, this, &JobWindow::Stop);
  connect(ui_->again_button, &QPushButton::clicked, follow_ups_, &FollowUpJobs::TryAgain);
  connect(ui_->test_button, &QPushButton::clicked, this, &JobWindow::testWanted);
  connect(ui_->firewall_button, &QPushButton::clicked, this,
          [this] { Q_EMIT firewallWanted(looks_.Blocked()); });
  connect(&looks_, &JobLooks::firewallShown, this,
          [this] { ui_->firewall_button->setVisible(!looks_.Blocked().isEmpty()); });
  connect(ui_->take_back_button, &QPushButton::clicked, follow_ups_, &FollowUpJobs::TakeBack);
  connect(follow_ups_, &FollowUpJobs::beginning, this, &JobWindow::OpenAgain);
  connect(follow_ups_, &FollowUpJobs::routerPageWanted, this, &JobWindow::routerPageWanted);
  connect(ui_->report_button, &QPushButton::clicked, this, &JobWindow::SaveReport);
  connect(ui_->close_button, &QPushButton::clicked, this, &JobWindow::CloseAfterAsking);
}

// The job is destroyed first: its browsers use this window's widgets.
JobWindow::~JobWindow() {
  looks_.CancelFirewallLook();
  runner_.reset();
}

// The login may be changed in the main window during the job.
void JobWindow::NoteLogin() {
  if (const Login login = context_.session.CurrentLogin(); !logins_.contains(login)) {
    logins_.append(login);
  }
}

void JobWindow::ShowDetails(bool open) {
  if (!open && ui_->details_area->isAncestorOf(focusWidget())) {
    ui_->entries_view->setFocus();
  }
  ui_->details_button->setChecked(open);
  ui_->details_area->SetOpen(open);
  for (QWidget* part :
       std::initializer_list<QWidget*>{ui_->log_side, ui_->lower_splitter, ui_->progress_frame}) {
    part->setVisible(open);  // their access keys must not work while they are hidden
  }
  ui_->entries_view->setMaximumHeight(open ? kListHeightWithDetails : QWIDGETSIZE_MAX);
  if (isVisible() && !isMaximized() && !isFullScreen()) {
    ResizeOnScreen(*this, open ? size().expandedTo(kSizeWithDetails) : kSize);
  }
}

// Tab passes a page that is not seen.
bool JobWindow::focusNextPrevChild(bool next) {
  const QWidget* first = nullptr;
  bool has_moved = QWidget::focusNextPrevChild(next);
  while (has_moved && !ui_->details_area->IsOpen() && focusWidget() != first &&
         ui_->details_area->isAncestorOf(focusWidget())) {
    first = first == nullptr ? focusWidget() : first;
    has_moved = QWidget::focusNextPrevChild(next);
  }
  return has_moved;
}

void JobWindow::Stop() {
  if (start_timer_.isActive()) {
    start_timer_.stop();
    runner_->Stop();
    ShowEnd();
    return;
  }
  display_->DisableStop();
  ui_->headline_label->setText(Text(message::kStopping));
  runner_->Stop();
}

void JobWindow::ShowEnd() {
  const JobOutcome& outcome = runner_->Outcome();
  follow_ups_->NoteEnd();
  const bool has_checked =
      outcome.kind == JobKind::kCheck && !outcome.stopped && !outcome.results.isEmpty();
  looks_.Note(*runner_);
  entry_states_.SetResults(outcome.results,
                           has_checked ? entry_states_.rowCount() : outcome.entries);
  looks_.Show();
  ui_->entries_view->scrollTo(entry_states_.FirstToLookAt());
  ShowOutcome();
  ui_->waiting_label->clear();
  progress_->ShowEnd();
  display_->DisableStop();
  ui_->again_button->setVisible(kind_ == JobKind::kUpdate && follow_ups_->CanTryAgain());
  ui_->take_back_button->setVisible(follow_ups_->CanTakeBack());
  ui_->test_button->setVisible(!outcome.results.isEmpty());
  ui_->report_button->show();
  if (!follow_ups_->HasLooked()) {
    NotifyOfEnd();
  }
  if (outcome.kind != JobKind::kTakeBack) {
    looks_.LookAtFirewall();
  }
  follow_ups_->GoOn();
}

void JobWindow::ShowOutcome() {
  ui_->headline_label->setText(OutcomeText(runner_->Outcome(), follow_ups_->WasStopped(),
                                           context_.job_options.verify_after_update, entry_states_,
                                           context_.translator));
}

void JobWindow::NotifyOfEnd() {
  if (!runner_->StoppedByUser() && !IsInFront()) {
    context_.desktop.ShowNotification(QStringLiteral("Quayline"), ui_->headline_label->text());
  }
}

bool JobWindow::IsInFront() const {
  const QWidget* active = QApplication::activeWindow();
  while (active != nullptr && active != this) {
    active = active->parentWidget();  // a box of this window
  }
  return active == this;
}

void JobWindow::SaveReport() {
  prompts_.AskSaveFile(this,
                       {.title = Text(message::kReportTitle),
                        .filter = Text(message::kReportFilter),
                        .default_suffix = QStringLiteral("txt")},
                       [this](const QString& file) {
                         if (!SaveFile(file, Report().toUtf8())) {
                           prompts_.Tell(this, Text(message::kCannotSaveReport) +
                                                   QLatin1Char('\n') +
                                                   QDir::toNativeSeparators(file));
                         }
                       });
}

QString JobWindow::Report() const {
  JobReport report = report_head_;
  report.outcome = ui_->headline_label->text();
  report.log = ui_->log_edit->toPlainText();
  report.states = ui_->status_edit->toPlainText();
  report.errors = ui_->errors_edit->toPlainText();
  report.entries = ReportEntries(entry_states_);
  return ReportText(report, logins_ + questions_.TypedLogins(), context_.translator);
}

void JobWindow::OpenAgain() {
  for (QWidget* button :
       std::initializer_list<QWidget*>{ui_->again_button, ui_->take_back_button, ui_->test_button,
                                       ui_->firewall_button, ui_->report_button}) {
    button->hide();
  }
  looks_.CancelFirewallLook();
  ui_->stop_button->setEnabled(true);
  ui_->headline_label->setText(Text(message::kLooking));
  runner_->Open();
  display_->ShowOpened();
}

void JobWindow::CloseAfterAsking() {
  if (IsWorking()) {
    display_->AskToClose(message::kCloseTitle, message::kCloseQuestion);
  } else {
    close();
  }
}

void JobWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    CloseAfterAsking();
  } else if (!PressByEnter(*this, *event)) {
    QWidget::keyPressEvent(event);
  }
}

// The headline of a job that runs follows with the next entry.
void JobWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange && !ui_->report_button->isHidden()) {
    ShowOutcome();
    progress_->ShowTitle();
    looks_.Show();
  }
}

void JobWindow::closeEvent(QCloseEvent* event) {
  if (event->spontaneous() && IsWorking()) {  // by the user, with the window's frame
    event->ignore();
    CloseAfterAsking();
    return;
  }
  if (IsWorking()) {
    looks_.Note(*runner_);
  }
  start_timer_.stop();
  display_->Leave();
  event->accept();
}

void JobWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ui_->busy_bar->SetMoving(IsWorking());
}

}  // namespace quayline
