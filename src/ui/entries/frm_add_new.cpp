// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/frm_add_new.h"

#include <QLocale>

#include "core/port_discovery.h"
#include "core/program_entries.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/short_list.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_add_new.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kUsualWidth = 520;

constexpr ComputerNameTexts kNameTexts{
    {"FrmAddNew", "Text28", "Couldn't resolve this IP address to its Name."},
    {"FrmAddNew", "Text29", "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'"},
    {"FrmAddNew", "Text30", "Are you sure you want to use this IP address?"}};

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

FrmAddNew::FrmAddNew(AppContext& context, Prompts& prompts, HostNames& host_names,
                     const ForeignSettings& foreign_settings, QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      foreign_settings_(foreign_settings),
      ui_(std::make_unique<Ui::FrmAddNew>()),
      name_search_(new ComputerNameSearch(context, prompts, host_names, kNameTexts, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  KeepStatusPlace(*ui_->label_status, *ui_->dBar1);
  ResizeOnScreen(*this, sizeHint().expandedTo(QSize(kUsualWidth, 0)));
  SetIdle();
  ConnectDatabasePage();
  ConnectCustomPage();
  connect(name_search_, &ComputerNameSearch::started, this,
          [this](const QString& address) { SetBusy(Text(message::kLookingUpName).arg(address)); });
  connect(name_search_, &ComputerNameSearch::ended, this, &FrmAddNew::SetIdle);
  connect(ui_->command_close, &QPushButton::clicked, this, &FrmAddNew::reject);
  ConnectPages();
}

FrmAddNew::~FrmAddNew() = default;

void FrmAddNew::reject() {
  loading_.Cancel();
  adding_.Cancel();
  QDialog::reject();
}

void FrmAddNew::ConnectPages() {
  tabs_.addButton(ui_->Command3);
  tabs_.addButton(ui_->Command4);
  timer1_.setSingleShot(true);
  timer1_.setInterval(100ms);
  connect(&timer1_, &QTimer::timeout, this, [this] { loading_.Start(LoadPrograms()); });
  connect(ui_->Command3, &QPushButton::clicked, this, [this] { ShowPage(false); });
  connect(ui_->Command4, &QPushButton::clicked, this, [this] { ShowPage(true); });
  ShowPage(false);
}

void FrmAddNew::ConnectDatabasePage() {
  programs_ = new ProgramBox(*ui_->Combo3, context_.databases);
  ui_->Combo3->lineEdit()->setPlaceholderText(Text(message::kSearchProgram));
  connect(programs_, &ProgramBox::progress, this, [this](int loaded, int total) {
    ui_->progress_bar->setMaximum(std::max(1, total));
    ui_->progress_bar->setValue(loaded);
  });
  connect(programs_, &ProgramBox::chosen, this, [this](const AppPortRecord& program) {
    ui_->Combo6->setCurrentIndex(-1);
    ui_->Label19->clear();
    ShowProgram(program, message::kEntriesRequired);
  });
  connect(programs_, &ProgramBox::choiceCleared, this, &FrmAddNew::ForgetProgram);
  ui_->Combo6->addItems(DiscoverablePrograms());
  ui_->Combo6->setCurrentIndex(-1);
  IgnoreWheel(ui_->Combo6);
  connect(ui_->Combo6, &QComboBox::textActivated, this, &FrmAddNew::Discover);
  ui_->ports_area->viewport()->setAutoFillBackground(false);  // the card's own shows through
  ui_->ports_content->setAutoFillBackground(false);
  MakeAddressBox(*ui_->Combo5, *ui_->zCommand4, context_.adapters, this);
  connect(ui_->Command2, &QPushButton::clicked, this, [this] { adding_.Start(AddProgram()); });
  ForgetProgram();
}

void FrmAddNew::ShowPage(bool is_custom) {
  (is_custom ? ui_->Command4 : ui_->Command3)->setChecked(true);
  ui_->Command3->setFlat(is_custom);
  ui_->Command4->setFlat(!is_custom);
  ui_->pages->setCurrentWidget(is_custom ? ui_->custom_page : ui_->database_page);
  ui_->Command1->setVisible(is_custom);
  ui_->Command2->setVisible(!is_custom);
  (is_custom ? ui_->Command1 : ui_->Command2)->setDefault(true);
  ui_->label_status->clear();
  (is_custom ? ui_->Combo2 : ui_->Combo3)->setFocus();
  if (!is_custom && programs_->IsEmpty() && !loading_.IsRunning()) {
    timer1_.start();
  }
}

void FrmAddNew::SetBusy(const QString& text) {
  SetInputsEnabled(false);
  ui_->label_status->setText(text);
  ui_->dBar1->SetMoving(true);
  ui_->dBar1->show();
}

void FrmAddNew::SetIdle() {
  SetInputsEnabled(true);
  ui_->label_status->clear();
  ui_->dBar1->hide();
}

void FrmAddNew::SetInputsEnabled(bool enabled) {
  ui_->pages->setEnabled(enabled);
  ui_->Command1->setEnabled(enabled);
  ui_->Command2->setEnabled(enabled);
  ui_->Command3->setEnabled(enabled);
  ui_->Command4->setEnabled(enabled);
}

Task<> FrmAddNew::LoadPrograms() {
  ui_->Combo3->setEnabled(false);
  ui_->Picture3->show();
  co_await programs_->Load();
  ui_->Picture3->hide();
  ui_->Combo3->setEnabled(true);
  ui_->Label9->setText(Text(message::kProgramsLoaded) + InBrackets(Grouped(ui_->Combo3->count())));
  if (!ui_->Command4->isChecked()) {
    ui_->Combo3->setFocus();
  }
}

void FrmAddNew::ShowProgram(const AppPortRecord& program, const Message& label) {
  program_ = program;
  const ProgramSummary summary = SummarizeProgram(program, context_.session);
  ui_->Label14->setText(summary.tcp);
  ui_->Label15->setText(summary.udp);
  ShowEntriesRequired(label, summary.entries);
}

void FrmAddNew::ForgetProgram() {
  program_.reset();
  ui_->Label14->clear();
  ui_->Label15->clear();
  ShowEntriesRequired(message::kEntriesRequired, 0);
}

void FrmAddNew::ShowEntriesRequired(const Message& label, int entries) {
  ui_->Label11->setText(Text(label) + InBrackets(QString::number(entries)));
  ui_->label_status->clear();
}

void FrmAddNew::Discover(const QString& program) {
  programs_->ClearChoice();
  ui_->Label19->setText(Text(message::kCheckingSettings));
  const DiscoveredPorts found = DiscoverPorts(program, foreign_settings_);
  ShowProgram(found.ports, message::kDiscoveredEntries);
  ui_->Label19->setText(DiscoveryText(found, context_.translator));
}

Task<> FrmAddNew::AddProgram() {
  const QString address = ui_->Combo5->currentText();
  const EntryVerdict verdict = CheckProgram(program_.has_value(), address, context_.translator);
  if (!verdict.accepted) {
    Refuse(verdict, ui_->Combo5);
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(address);
  if (!name) {
    ui_->Combo5->setFocus();
    co_return;
  }
  const ProgramEntries made =
      MakeProgramEntries(*program_, ForwardedTo(address, *name), context_.session);
  if (!made.entries.isEmpty()) {
    AddRows(made.entries);
  }
  ui_->Combo3->setFocus();
  if (!made.unreadable.isEmpty()) {
    prompts_.Tell(this, Text(message::kUnreadablePorts) + QLatin1Char('\n') +
                            ShortList(made.unreadable, QStringLiteral("\n")));
  } else if (made.entries.isEmpty()) {
    prompts_.Tell(this, Text(message::kNothingToAdd));
  }
}

void FrmAddNew::AddRows(const QList<PortEntry>& entries) {
  context_.port_list.Append(entries);
  Q_EMIT entriesAdded();
  ui_->label_status->setText(Text(message::kAdded) + InBrackets(Grouped(entries.size())));
}

void FrmAddNew::Refuse(const EntryVerdict& verdict, QWidget* address_box) {
  prompts_.Tell(this, verdict.message);
  switch (verdict.focus) {
    case EntryField::kProgram:
      ui_->Combo3->setFocus();
      break;
    case EntryField::kName:
      ui_->Combo2->setFocus();
      break;
    case EntryField::kAddress:
      address_box->setFocus();
      break;
    case EntryField::kNone:
      break;
  }
}

}  // namespace quayline
