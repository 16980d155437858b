// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/program_page.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QLineEdit>
#include <QLocale>

#include "async/wait.h"
#include "core/entry_checks.h"
#include "core/port_discovery.h"
#include "core/program_entries.h"
#include "ui/entries/computer_name.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/entries/program_box.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/field_note.h"
#include "ui/toolkit/short_list.h"
#include "ui_program_page.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

QString InBrackets(const QString& text) { return QStringLiteral(" (%1)").arg(text); }

QString DiscoveryText(const DiscoveredPorts& found, const Translator& translator) {
  switch (found.outcome) {
    case DiscoveryOutcome::kNoFile:
      return translator.Text(message::kNoSettingsFile);
    case DiscoveryOutcome::kNoRegistryValue:
      return translator.Text(message::kNoRegistryValue);
    case DiscoveryOutcome::kUnreadable:
      return translator.Text(message::kSettingsError).arg(found.problem);
    case DiscoveryOutcome::kRead:
      break;
  }
  const QString source =
      translator.Text(message::kSettingsOf) + QStringLiteral(" - ") + found.source;
  return found.IsComplete() ? source
                            : source + QLatin1Char('\n') + translator.Text(message::kNoUsablePort);
}

}  // namespace

ProgramPage::ProgramPage(AppContext& context, Prompts& prompts, ComputerNameSearch& names,
                         const ForeignSettings& foreign_settings, QWidget* parent)
    : QWidget(parent),
      context_(context),
      prompts_(prompts),
      names_(names),
      foreign_settings_(foreign_settings),
      ui_(std::make_unique<Ui::ProgramPage>()) {
  ui_->setupUi(this);
  program_note_ = new FieldNote(ui_->program_count_label, ui_->program_box);
  address_note_ = new FieldNote(ui_->program_address_note_label, ui_->program_address_box);
  ui_->ports_area->viewport()->setAutoFillBackground(false);  // the card's own shows through
  ui_->ports_content->setAutoFillBackground(false);
  MakeAddressBox(*ui_->program_address_box, *ui_->detect_program_address_button, context);
  loading_timer_.setSingleShot(true);
  loading_timer_.setInterval(100ms);
  connect(&loading_timer_, &QTimer::timeout, this, [this] { loading_.Start(LoadPrograms()); });
  ConnectPrograms();
  ForgetProgram();
}

ProgramPage::~ProgramPage() = default;

void ProgramPage::ConnectPrograms() {
  programs_ = new ProgramBox(*ui_->program_box, context_.databases);
  ui_->program_box->lineEdit()->setPlaceholderText(Text(message::kSearchProgram));
  connect(programs_, &ProgramBox::progress, this, [this](int loaded, int total) {
    ui_->progress_bar->setMaximum(std::max(1, total));
    ui_->progress_bar->setValue(loaded);
  });
  connect(programs_, &ProgramBox::chosen, this, [this](const AppPortRecord& program) {
    ui_->installed_box->setCurrentIndex(-1);
    ui_->discovery_label->clear();
    ShowProgram(program);
  });
  connect(programs_, &ProgramBox::choiceCleared, this, &ProgramPage::ForgetProgram);
  ui_->installed_box->addItems(DiscoverablePrograms());
  ui_->installed_box->setCurrentIndex(-1);
  IgnoreWheel(ui_->installed_box);
  connect(ui_->installed_box, &QComboBox::textActivated, this, &ProgramPage::Discover);
}

void ProgramPage::FocusFirst() {
  ui_->program_box->setFocus();
  if (programs_->IsEmpty() && !loading_.IsRunning()) {
    loading_timer_.start();
  }
}

Task<> ProgramPage::LoadPrograms() {
  ui_->program_box->setEnabled(false);
  ui_->loading_area->show();
  co_await programs_->Load();
  ui_->loading_area->hide();
  ui_->program_box->setEnabled(true);
  is_loaded_ = true;
  ShowCounts();
  if (isVisible()) {
    ui_->program_box->setFocus();
  }
  co_await ListInstalled();
}

// Reading one program takes long where a registry is large, so the window handles input after each.
Task<> ProgramPage::ListInstalled() {
  QStringList found;
  QStringList others;
  for (const QString& program : DiscoverablePrograms()) {
    const bool is_found = DiscoverPorts(program, foreign_settings_).IsComplete();
    (is_found ? found : others) += program;
    co_await Sleep(0ms);
  }
  QComboBox* box = ui_->installed_box;
  if (found.isEmpty() || box->view()->isVisible()) {
    co_return;
  }
  const QString chosen = box->currentText();
  box->clear();
  box->addItems(found);
  box->insertSeparator(box->count());
  box->addItems(others);
  box->setCurrentIndex(chosen.isEmpty() ? -1 : box->findText(chosen));
}

void ProgramPage::ShowProgram(const AppPortRecord& program) {
  program_ = program;
  program_note_->ClearProblem();
  const ProgramSummary summary = SummarizeProgram(program, context_.session);
  ui_->tcp_ports_label->setText(summary.tcp);
  ui_->udp_ports_label->setText(summary.udp);
  ShowEntriesRequired(summary.entries);
}

void ProgramPage::ForgetProgram() {
  program_.reset();
  ui_->tcp_ports_label->clear();
  ui_->udp_ports_label->clear();
  ShowEntriesRequired(0);
}

void ProgramPage::ShowEntriesRequired(int entries) {
  entries_required_ = entries;
  ShowCounts();
  Q_EMIT programChanged();
}

void ProgramPage::ShowCounts() {
  ui_->entries_required_label->setText(Text(message::kEntriesRequired) +
                                       InBrackets(QString::number(entries_required_)));
  if (is_loaded_) {
    program_note_->SetHint(
        Text(message::kProgramsLoaded) +
        InBrackets(QLocale(QLocale::English).toString(ui_->program_box->count())));
  }
}

void ProgramPage::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    ShowCounts();
  }
}

void ProgramPage::Discover(const QString& program) {
  programs_->ClearChoice();
  ui_->discovery_label->setText(Text(message::kCheckingSettings));
  const DiscoveredPorts found = DiscoverPorts(program, foreign_settings_);
  ShowProgram(found.ports);
  ui_->discovery_label->setText(DiscoveryText(found, context_.translator));
}

Task<> ProgramPage::Add() {
  const QString address = ui_->program_address_box->currentText();
  if (const auto problem = CheckProgram(program_.has_value(), address, context_.translator)) {
    ShowProblem(*problem);
    co_return;
  }
  const std::optional<QString> name = co_await names_.Find(address);
  if (!name) {
    ui_->program_address_box->setFocus();
    co_return;
  }
  const ProgramEntries made =
      MakeProgramEntries(*program_, ForwardedTo(address, *name), context_.session);
  if (!made.entries.isEmpty()) {
    context_.port_list.Append(made.entries);
    Q_EMIT entriesAdded(made.entries.size());
  }
  ui_->program_box->setFocus();
  if (!made.unreadable.isEmpty()) {
    prompts_.Tell(window(), Text(message::kUnreadablePorts) + QLatin1Char('\n') +
                                ShortList(made.unreadable, QStringLiteral("\n")));
  } else if (made.entries.isEmpty()) {
    prompts_.Tell(window(), Text(message::kNothingToAdd));
  }
}

void ProgramPage::ShowProblem(const EntryProblem& problem) {
  FieldNote* note = problem.field == EntryField::kProgram ? program_note_ : address_note_;
  note->ShowProblem(problem.message);
  note->Field()->setFocus();
}

}  // namespace quayline
