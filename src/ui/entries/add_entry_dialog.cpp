// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/add_entry_dialog.h"

#include <QLocale>

#include "ui/entries/computer_name.h"
#include "ui/entries/custom_page.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/entries/program_page.h"
#include "ui/toolkit/settle_focus.h"
#include "ui/toolkit/theme.h"
#include "ui_add_entry_dialog.h"

namespace quayline {

namespace {

// The pages change their height with the ports of a program: the window does not.
constexpr QSize kUsualSize(560, 552);

}  // namespace

AddEntryDialog::AddEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names,
                               const ForeignSettings& foreign_settings, QWidget* parent)
    : QDialog(parent),
      context_(context),
      ui_(std::make_unique<Ui::AddEntryDialog>()),
      names_(new ComputerNameSearch(context, prompts, host_names, this)),
      program_page_(new ProgramPage(context, prompts, *names_, foreign_settings, this)),
      custom_page_(new CustomPage(context, *names_, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  ui_->tabs->addTab(program_page_, Text(message::kDatabaseTab));
  ui_->tabs->addTab(custom_page_, Text(message::kCustomTab));
  KeepStatusPlace(*ui_->status_label, *ui_->busy_bar);
  ResizeOnScreen(*this, kUsualSize);
  SetIdle();
  connect(names_, &ComputerNameSearch::started, this, &AddEntryDialog::SetBusy);
  connect(names_, &ComputerNameSearch::ended, this, &AddEntryDialog::SetIdle);
  connect(program_page_, &ProgramPage::entriesAdded, this, &AddEntryDialog::ShowAdded);
  connect(program_page_, &ProgramPage::programChanged, ui_->status_label, &QLabel::clear);
  connect(custom_page_, &CustomPage::entriesAdded, this, &AddEntryDialog::ShowAdded);
  connect(ui_->tabs, &QTabWidget::currentChanged, this, &AddEntryDialog::FocusPage);
  ConnectCommand(ui_->add_button, this, [this] {
    ui_->status_label->clear();
    adding_.Start(IsCustom() ? custom_page_->Add() : program_page_->Add());
  });
  connect(ui_->close_button, &QPushButton::clicked, this, &AddEntryDialog::reject);
  FocusPage();
}

AddEntryDialog::~AddEntryDialog() = default;

void AddEntryDialog::reject() {
  program_page_->CancelLoading();
  adding_.Cancel();
  QDialog::reject();
}

bool AddEntryDialog::IsCustom() const { return ui_->tabs->currentWidget() == custom_page_; }

// With the arrow keys the user goes through the tabs themselves.
void AddEntryDialog::FocusPage() {
  ui_->status_label->clear();
  if (ui_->tabs->tabBar()->hasFocus()) {
    return;
  }
  if (IsCustom()) {
    custom_page_->FocusFirst();
  } else {
    program_page_->FocusFirst();
  }
}

void AddEntryDialog::SetBusy(const QString& address) {
  ui_->tabs->setEnabled(false);
  ui_->add_button->setEnabled(false);
  ui_->status_label->setText(Text(message::kLookingUpName).arg(address));
  ui_->busy_bar->SetMoving(true);
  ui_->busy_bar->show();
}

void AddEntryDialog::SetIdle() {
  ui_->tabs->setEnabled(true);
  ui_->add_button->setEnabled(true);
  ui_->status_label->clear();
  ui_->busy_bar->hide();
}

void AddEntryDialog::ShowAdded(qsizetype count) {
  Q_EMIT entriesAdded();
  ui_->status_label->setText(
      Text(message::kAdded) +
      QStringLiteral(" (%1)").arg(QLocale(QLocale::English).toString(count)));
}

}  // namespace quayline
