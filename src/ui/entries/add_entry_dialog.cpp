// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/add_entry_dialog.h"

#include <QLocale>

#include "core/port_discovery.h"
#include "core/program_entries.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/short_list.h"
#include "ui/toolkit/theme.h"
#include "ui_add_entry_dialog.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kUsualWidth = 520;

QString InBrackets(const QString& text) { return QStringLiteral(" (%1)").arg(text); }

QString Grouped(qsizetype number) { return QLocale(QLocale::English).toString(number); }

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

AddEntryDialog::AddEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names,
                               const ForeignSettings& foreign_settings, QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      foreign_settings_(foreign_settings),
      ui_(std::make_unique<Ui::AddEntryDialog>()),
      name_search_(new ComputerNameSearch(context, prompts, host_names, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  KeepStatusPlace(*ui_->status_label, *ui_->busy_bar);
  ResizeOnScreen(*this, sizeHint().expandedTo(QSize(kUsualWidth, 0)));
  SetIdle();
  ConnectDatabasePage();
  ConnectCustomPage();
  connect(name_search_, &ComputerNameSearch::started, this,
          [this](const QString& address) { SetBusy(Text(message::kLookingUpName).arg(address)); });
  connect(name_search_, &ComputerNameSearch::ended, this, &AddEntryDialog::SetIdle);
  connect(ui_->close_button, &QPushButton::clicked, this, &AddEntryDialog::reject);
  ConnectPages();
}

AddEntryDialog::~AddEntryDialog() = default;

void AddEntryDialog::reject() {
  loading_.Cancel();
  adding_.Cancel();
  QDialog::reject();
}

void AddEntryDialog::ConnectPages() {
  tabs_.addButton(ui_->database_tab_button);
  tabs_.addButton(ui_->custom_tab_button);
  loading_timer_.setSingleShot(true);
  loading_timer_.setInterval(100ms);
  connect(&loading_timer_, &QTimer::timeout, this, [this] { loading_.Start(LoadPrograms()); });
  connect(ui_->database_tab_button, &QPushButton::clicked, this, [this] { ShowPage(false); });
  connect(ui_->custom_tab_button, &QPushButton::clicked, this, [this] { ShowPage(true); });
  ShowPage(false);
}

void AddEntryDialog::ConnectDatabasePage() {
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
  connect(programs_, &ProgramBox::choiceCleared, this, &AddEntryDialog::ForgetProgram);
  ui_->installed_box->addItems(DiscoverablePrograms());
  ui_->installed_box->setCurrentIndex(-1);
  IgnoreWheel(ui_->installed_box);
  connect(ui_->installed_box, &QComboBox::textActivated, this, &AddEntryDialog::Discover);
  ui_->ports_area->viewport()->setAutoFillBackground(false);  // shows the background of the card
  ui_->ports_content->setAutoFillBackground(false);
  MakeAddressBox(*ui_->program_address_box, *ui_->detect_program_address_button, context_.adapters,
                 this);
  connect(ui_->add_program_button, &QPushButton::clicked, this,
          [this] { adding_.Start(AddProgram()); });
  ForgetProgram();
}

void AddEntryDialog::ShowPage(bool is_custom) {
  (is_custom ? ui_->custom_tab_button : ui_->database_tab_button)->setChecked(true);
  ui_->database_tab_button->setFlat(is_custom);
  ui_->custom_tab_button->setFlat(!is_custom);
  ui_->pages->setCurrentWidget(is_custom ? ui_->custom_page : ui_->database_page);
  ui_->add_custom_button->setVisible(is_custom);
  ui_->add_program_button->setVisible(!is_custom);
  (is_custom ? ui_->add_custom_button : ui_->add_program_button)->setDefault(true);
  ui_->status_label->clear();
  (is_custom ? ui_->name_box : ui_->program_box)->setFocus();
  if (!is_custom && programs_->IsEmpty() && !loading_.IsRunning()) {
    loading_timer_.start();
  }
}

void AddEntryDialog::SetBusy(const QString& text) {
  SetInputsEnabled(false);
  ui_->status_label->setText(text);
  ui_->busy_bar->SetMoving(true);
  ui_->busy_bar->show();
}

void AddEntryDialog::SetIdle() {
  SetInputsEnabled(true);
  ui_->status_label->clear();
  ui_->busy_bar->hide();
}

void AddEntryDialog::SetInputsEnabled(bool enabled) {
  ui_->pages->setEnabled(enabled);
  ui_->add_custom_button->setEnabled(enabled);
  ui_->add_program_button->setEnabled(enabled);
  ui_->database_tab_button->setEnabled(enabled);
  ui_->custom_tab_button->setEnabled(enabled);
}

Task<> AddEntryDialog::LoadPrograms() {
  ui_->program_box->setEnabled(false);
  ui_->loading_area->show();
  co_await programs_->Load();
  ui_->loading_area->hide();
  ui_->program_box->setEnabled(true);
  ui_->program_count_label->setText(Text(message::kProgramsLoaded) +
                                    InBrackets(Grouped(ui_->program_box->count())));
  if (!ui_->custom_tab_button->isChecked()) {
    ui_->program_box->setFocus();
  }
}

void AddEntryDialog::ShowProgram(const AppPortRecord& program) {
  program_ = program;
  const ProgramSummary summary = SummarizeProgram(program, context_.session);
  ui_->tcp_ports_label->setText(summary.tcp);
  ui_->udp_ports_label->setText(summary.udp);
  ShowEntriesRequired(summary.entries);
}

void AddEntryDialog::ForgetProgram() {
  program_.reset();
  ui_->tcp_ports_label->clear();
  ui_->udp_ports_label->clear();
  ShowEntriesRequired(0);
}

void AddEntryDialog::ShowEntriesRequired(int entries) {
  ui_->entries_required_label->setText(Text(message::kEntriesRequired) +
                                       InBrackets(QString::number(entries)));
  ui_->status_label->clear();
}

void AddEntryDialog::Discover(const QString& program) {
  programs_->ClearChoice();
  ui_->discovery_label->setText(Text(message::kCheckingSettings));
  const DiscoveredPorts found = DiscoverPorts(program, foreign_settings_);
  ShowProgram(found.ports);
  ui_->discovery_label->setText(DiscoveryText(found, context_.translator));
}

Task<> AddEntryDialog::AddProgram() {
  const QString address = ui_->program_address_box->currentText();
  const EntryVerdict verdict = CheckProgram(program_.has_value(), address, context_.translator);
  if (!verdict.accepted) {
    Refuse(verdict, ui_->program_address_box);
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(address);
  if (!name) {
    ui_->program_address_box->setFocus();
    co_return;
  }
  const ProgramEntries made =
      MakeProgramEntries(*program_, ForwardedTo(address, *name), context_.session);
  if (!made.entries.isEmpty()) {
    AddRows(made.entries);
  }
  ui_->program_box->setFocus();
  if (!made.unreadable.isEmpty()) {
    prompts_.Tell(this, Text(message::kUnreadablePorts) + QLatin1Char('\n') +
                            ShortList(made.unreadable, QStringLiteral("\n")));
  } else if (made.entries.isEmpty()) {
    prompts_.Tell(this, Text(message::kNothingToAdd));
  }
}

void AddEntryDialog::AddRows(const QList<PortEntry>& entries) {
  context_.port_list.Append(entries);
  Q_EMIT entriesAdded();
  ui_->status_label->setText(Text(message::kAdded) + InBrackets(Grouped(entries.size())));
}

void AddEntryDialog::Refuse(const EntryVerdict& verdict, QWidget* address_box) {
  prompts_.Tell(this, verdict.message);
  switch (verdict.focus) {
    case EntryField::kProgram:
      ui_->program_box->setFocus();
      break;
    case EntryField::kName:
      ui_->name_box->setFocus();
      break;
    case EntryField::kAddress:
      address_box->setFocus();
      break;
    case EntryField::kNone:
      break;
  }
}

}  // namespace quayline
