// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/frm_job_status.h"

#include <QCloseEvent>

#include "ui/job/job_window_texts.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_job_status.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// Adds to the end and keeps the end in view; a long log is never laid out again.
void AppendAtEnd(QPlainTextEdit& box, const QString& text) {
  QTextCursor cursor(box.document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(text);
  box.setTextCursor(cursor);
  box.ensureCursorVisible();
}

// A new line, with the caret at its start.
void AppendLine(QPlainTextEdit& box, const QString& line) {
  AppendAtEnd(box, QLatin1Char('\n') + line);
  box.moveCursor(QTextCursor::StartOfBlock);
}

}  // namespace

FrmJobStatus::FrmJobStatus(AppContext& context, Prompts& prompts, PageHostFactory make_host)
    : context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::FrmJobStatus>()),
      runner_(std::make_unique<JobRunner>(context, std::move(make_host))) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(Text(message::kJobTitle));
  resize(1120, 780);
  ui_->upper_splitter->setSizes({690, 400});
  ui_->splitter->setSizes({500, 120});
  QFont title = ui_->label_entry->font();
  title.setBold(true);
  ui_->label_entry->setFont(title);
  ui_->label_waiting->setForegroundRole(QPalette::PlaceholderText);
  ui_->Command1->setIcon(ThemeIcon(QStringLiteral("step")));
  ui_->command_stop->setIcon(ThemeIcon(QStringLiteral("stop")));
  ui_->Text2->setPlainText(Text(message::kFirstStatus) + QLatin1Char('\n'));

  ConnectLog();
  ConnectQuestions();
  ConnectProgress();
  ConnectButtons();
  runner_->Open();
  ShowHost(runner_->ActiveHost());
  ui_->Command1->setVisible(context_.job_options.debug_mode);
  timer1_.setSingleShot(true);
  connect(&timer1_, &QTimer::timeout, runner_.get(), &JobRunner::Run);
  timer1_.start(500ms);
}

// The job first: its browsers show themselves in this window's widgets.
FrmJobStatus::~FrmJobStatus() { runner_.reset(); }

void FrmJobStatus::ConnectLog() {
  connect(&runner_->Log(), &JobLog::appended, this,
          [this](const QString& text) { AppendAtEnd(*ui_->Text1, text); });
  connect(runner_.get(), &JobRunner::statusAppended, this,
          [this](const QString& line) { AppendLine(*ui_->Text2, line); });
  connect(runner_.get(), &JobRunner::errorAppended, this,
          [this](const QString& line) { AppendLine(*ui_->Text3, line); });
  connect(runner_.get(), &JobRunner::errorsCleared, this,
          [this] { ui_->Text3->setPlainText(Text(kJobTexts.last_error)); });
  connect(runner_.get(), &JobRunner::noticeRequested, this,
          [this](const QString& text) { prompts_.Notify(this, text); });
}

// The page waits for the answers; the job can be stopped meanwhile by refusing.
void FrmJobStatus::ConnectQuestions() {
  connect(runner_.get(), &JobRunner::certificateQuestion, this,
          [this](const QString& address, const QString& fingerprint,
                 const std::function<void(bool)>& answer) {
            prompts_.AskCarefully(this, Text(message::kCertificateTitle),
                                  Text(message::kCertificateQuestion).arg(address, fingerprint),
                                  answer);
          });
  connect(
      runner_.get(), &JobRunner::loginQuestion, this,
      [this](const QString& address, const std::function<void(std::optional<TypedLogin>)>& answer) {
        prompts_.AskLogin(this, address, [answer](const std::optional<LoginAnswer>& login) {
          answer(login ? std::optional(TypedLogin{login->username, login->password})
                       : std::nullopt);
        });
      });
}

void FrmJobStatus::ConnectProgress() {
  connect(runner_.get(), &JobRunner::activeHostChanged, this, &FrmJobStatus::ShowHost);
  connect(runner_.get(), &JobRunner::progressChanged, ui_->progress_bar, &QProgressBar::setValue);
  connect(runner_.get(), &JobRunner::busyChanged, ui_->dBar1, &AnimationBar::SetMoving);
  connect(runner_.get(), &JobRunner::entryStarted, this, &FrmJobStatus::ShowEntry);
  connect(runner_.get(), &JobRunner::waitingFor, this, &FrmJobStatus::ShowWait);
  connect(runner_.get(), &JobRunner::ended, this, &FrmJobStatus::ShowEnd);
}

void FrmJobStatus::ConnectButtons() {
  // Debug mode may be switched on in the middle of a job, which then holds: the way on must show.
  connect(runner_.get(), &JobRunner::proceedEnabled, this, [this](bool enabled) {
    ui_->Command1->setVisible(enabled || ui_->Command1->isVisible());
    ui_->Command1->setEnabled(enabled);
  });
  connect(ui_->Command1, &QPushButton::clicked, runner_.get(), &JobRunner::ProceedToNextCommand);
  connect(ui_->command_stop, &QPushButton::clicked, this, &FrmJobStatus::Stop);
  connect(ui_->command_close, &QPushButton::clicked, this, &QWidget::close);
}

void FrmJobStatus::ShowHost(PageHost* host) {
  QWidget* shown = host ? host->Widget() : nullptr;
  QLayout* area = ui_->browser_area->layout();
  for (int i = 0; i < area->count(); ++i) {
    QWidget* other = area->itemAt(i)->widget();
    other->setVisible(other == shown);
  }
  if (shown && area->indexOf(shown) < 0) {
    area->addWidget(shown);
    shown->show();
  }
}

void FrmJobStatus::ShowEntry(int row, int rows, const QString& app_name) {
  ui_->label_entry->setText(
      Text(message::kEntryOf).arg(QString::number(row), QString::number(rows), app_name));
  setWindowTitle(QStringLiteral("%1 (%2/%3)")
                     .arg(Text(message::kJobTitle), QString::number(row), QString::number(rows)));
  ui_->dBar1->SetMoving(true);
}

void FrmJobStatus::ShowWait(const QString& what) {
  ui_->label_waiting->setText(what.isEmpty() ? QString() : Text(message::kWaitingFor).arg(what));
}

void FrmJobStatus::Stop() {
  if (timer1_.isActive()) {
    timer1_.stop();
    runner_->Stop();
    ShowEnd();
    return;
  }
  ui_->command_stop->setEnabled(false);
  ui_->label_entry->setText(Text(message::kStopping));
  runner_->Stop();
}

void FrmJobStatus::ShowEnd() {
  ui_->label_entry->setText(OutcomeText());
  ui_->label_waiting->clear();
  ui_->dBar1->SetMoving(false);
  ui_->Command1->setEnabled(false);
  ui_->command_stop->setEnabled(false);
  ui_->command_close->setFocus();
  setWindowTitle(Text(message::kJobTitle));
  Q_EMIT jobEnded();
}

QString FrmJobStatus::OutcomeText() const {
  const JobOutcome& outcome = runner_->Outcome();
  if (outcome.stopped || context_.job_flags.JobStopRequested()) {
    return Text(message::kStopped);
  }
  if (outcome.entries_failed > 0) {
    return Text(message::kFinishedWithErrors)
        .arg(QString::number(outcome.entries_failed), QString::number(outcome.entries));
  }
  return Text(message::kFinished);
}

void FrmJobStatus::closeEvent(QCloseEvent* event) {
  timer1_.stop();
  context_.job_flags.SetPageErrorPending(true);
  runner_->Stop();
  event->accept();
}

void FrmJobStatus::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ui_->dBar1->SetMoving(timer1_.isActive() || runner_->IsRunning());
}

}  // namespace quayline
