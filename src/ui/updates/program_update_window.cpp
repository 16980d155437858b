// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/updates/program_update_window.h"

#include <QDir>

#include <utility>

#include "ui/updates/update_texts.h"
#include "ui_program_update_window.h"

namespace quayline {

namespace {

const QString kTitle = QStringLiteral("Quayline");
constexpr qsizetype kMostLetters = 40;  // of a version that is shown

}  // namespace

ProgramUpdateWindow::ProgramUpdateWindow(AppContext& context, Prompts& prompts,
                                         const QString& local_version, QWidget* parent,
                                         std::function<void()> exit)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      exit_(std::move(exit)),
      update_(context, local_version),
      ui_(std::make_unique<Ui::ProgramUpdateWindow>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  ui_->transfer_panel->Follow(update_.Transfer(), context.translator);
  ui_->current_version_label->setText(update_.LocalVersion());
  ui_->auto_check_box->setChecked(context.settings.Value(setting::kCheckForUpdates).toDouble() ==
                                  1);
  connect(ui_->auto_check_box, &QCheckBox::clicked, this, [this](bool checked) {
    context_.settings.SetValue(setting::kCheckForUpdates, QString::number(checked ? 1 : 0));
  });
  connect(ui_->check_button, &QPushButton::clicked, this, &ProgramUpdateWindow::Check);
  connect(ui_->close_button, &QPushButton::clicked, this, &ProgramUpdateWindow::reject);
  ConnectUpdate();
}

ProgramUpdateWindow::~ProgramUpdateWindow() { update_.Cancel(); }

void ProgramUpdateWindow::ConnectUpdate() {
  connect(&update_, &ProgramUpdate::sizeKnown, ui_->transfer_panel, &TransferPanel::SetTotal);
  connect(&update_, &ProgramUpdate::versionFound, this,
          [this] { ui_->new_version_label->setText(update_.Found().current.left(kMostLetters)); });
  connect(&update_, &ProgramUpdate::failed, this,
          [this](const Message& why) { ui_->transfer_panel->ShowReason(Text(why)); });
  connect(&update_, &ProgramUpdate::idle, ui_->transfer_panel, &TransferPanel::End);
  connect(&update_, &ProgramUpdate::upToDate, this, &ProgramUpdateWindow::ReportUpToDate);
  connect(&update_, &ProgramUpdate::newVersion, this, &ProgramUpdateWindow::OfferVersion);
  connect(&update_, &ProgramUpdate::installerReady, this, &ProgramUpdateWindow::StartInstaller);
}

void ProgramUpdateWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  is_automatic_ = false;  // the user sees from now on what becomes of it
  if (!update_.HasSite()) {
    const QString command = context_.desktop.UpdateCommand();
    const QString advice = command.isEmpty()
                               ? QString()
                               : QStringLiteral("\n\n") + Text(message::kUpdateByPackages) +
                                     QLatin1Char('\n') + command;
    ui_->transfer_panel->ShowReason(Text(message::kNoUpdateSite) + advice);
    ui_->check_button->setEnabled(false);
  }
}

void ProgramUpdateWindow::CheckSilently() {
  is_automatic_ = !isVisible();
  Check();
}

void ProgramUpdateWindow::Check() {
  if (!update_.IsRunning() && update_.HasSite()) {
    ui_->transfer_panel->Begin();
    update_.CheckForUpdate();
  }
}

void ProgramUpdateWindow::ReportUpToDate() {
  if (is_automatic_) {
    deleteLater();
    return;
  }
  prompts_.Tell(this, Text(message::kUpToDate), [this] { close(); });
}

void ProgramUpdateWindow::OfferVersion() {
  const QString version = Text(message::kNewVersion) + update_.Found().current;
  const QString command = context_.desktop.UpdateCommand();
  if (!command.isEmpty() && !context_.settings.Boolean(setting::kUseInstaller)) {
    prompts_.Tell(BoxParent(), version + QStringLiteral("\n\n") + Text(message::kUpdateByPackages) +
                                   QLatin1Char('\n') + command);
    return;
  }
  const auto fetch = [this](bool yes) {
    if (!yes) {
      return;
    }
    if (!isVisible()) {
      open();
    }
    ui_->transfer_panel->Begin();
    update_.FetchInstaller();
  };
  prompts_.Ask(BoxParent(), kTitle, version + QLatin1Char('\n') + Text(message::kDownloadNow),
               fetch);
}

void ProgramUpdateWindow::StartInstaller(const QString& file) {
  if (!context_.desktop.OpenFile(file)) {
    prompts_.Tell(this, Text(message::kCannotOpenInstaller) + QLatin1Char('\n') +
                            QDir::toNativeSeparators(file));
    return;
  }
  const auto exit = exit_;
  close();
  exit();
}

// Also Esc and the frame's button.
void ProgramUpdateWindow::reject() {
  if (!update_.IsRunning() || ui_->transfer_panel->MayClose()) {
    QDialog::reject();
  }
}

}  // namespace quayline
