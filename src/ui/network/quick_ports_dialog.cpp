// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/quick_ports_dialog.h"

#include <QStandardItemModel>

#include "core/program_entries.h"
#include "ui/network/quick_ports_texts.h"
#include "ui/toolkit/theme.h"
#include "ui_quick_ports_dialog.h"

namespace quayline {

namespace {

const Message& ResultText(MappingResult result) {
  switch (result) {
    case MappingResult::kOpen:
      return message::kMappingOpen;
    case MappingResult::kForGood:
      return message::kMappingForGood;
    case MappingResult::kShorter:
      return message::kMappingShorter;
    case MappingResult::kMissing:
      return message::kMappingMissing;
    case MappingResult::kTaken:
      return message::kMappingTaken;
    case MappingResult::kRefused:
      return message::kMappingRefused;
    case MappingResult::kUnknown:
      break;
  }
  return message::kMappingUnknown;
}

QString PortsOf(const PortEntry& entry) {
  const QString ports = entry.start_port == entry.end_port
                            ? entry.start_port
                            : entry.start_port + QLatin1Char('-') + entry.end_port;
  return ports + QLatin1Char(' ') + entry.protocol;
}

}  // namespace

QuickPortsDialog::QuickPortsDialog(AppContext& context, QWidget* parent, Ask ask)
    : QDialog(parent),
      context_(context),
      ask_(std::move(ask)),
      ui_(std::make_unique<Ui::QuickPortsDialog>()),
      rows_(new QStandardItemModel(0, kColumns, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, {680, 480});
  ui_->time_box->addItem(Text(message::kForAnHour), 3600);
  ui_->time_box->addItem(Text(message::kForADay), 86400);
  ui_->time_box->addItem(Text(message::kUntilRemoved), 0);
  SetUpList();
  connect(ui_->open_button, &QPushButton::clicked, this, [this] { Begin(MappingVerb::kOpen); });
  connect(ui_->close_ports_button, &QPushButton::clicked, this,
          [this] { Begin(MappingVerb::kClose); });
  connect(ui_->check_button, &QPushButton::clicked, this, [this] { Begin(MappingVerb::kCheck); });
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  Begin(MappingVerb::kCheck);
}

QuickPortsDialog::~QuickPortsDialog() { flow_.Cancel(); }

void QuickPortsDialog::SetUpList() {
  ui_->entries_view->setModel(rows_);
  rows_->setHorizontalHeaderLabels({Text(message::kOnRequestEntryColumn),
                                    Text(message::kPortsColumn), Text(message::kRouterColumn)});
  for (const PortEntry& entry : context_.port_list.Entries()) {
    const std::optional<Message> refusal = Refusal(entry);
    if (!refusal) {
      asked_.append(entry);
      rows_of_asked_.append(rows_->rowCount());
    }
    rows_->appendRow({new QStandardItem(entry.app_name), new QStandardItem(PortsOf(entry)),
                      new QStandardItem(refusal ? Text(*refusal) : QString())});
  }
  ui_->entries_view->SizeColumns();
}

std::optional<Message> QuickPortsDialog::Refusal(const PortEntry& entry) const {
  if (!context_.adapters.AddressTable().contains(AddressOf(entry.forwarded_to))) {
    return message::kMappingNotHere;
  }
  return CanBeMapped(entry) ? std::nullopt : std::optional(message::kMappingWrongPorts);
}

void QuickPortsDialog::Begin(MappingVerb verb) {
  if (context_.session.router_ip.isEmpty() || context_.session.router_ip.startsWith(u'0')) {
    ui_->answer_label->setText(Text(message::kNoRouterAddress));
    SetWorking(false);
    return;
  }
  SetWorking(true);
  ui_->answer_label->setText(Text(message::kAskingRouter));
  flow_.Start(Run(verb));
}

Task<> QuickPortsDialog::Run(MappingVerb verb) {
  MappingRequest request{.verb = verb,
                         .router = context_.session.router_ip,
                         .entries = asked_,
                         .time = std::chrono::seconds(ui_->time_box->currentData().toInt())};
  const std::expected<MappingAnswer, Message> answer = co_await ask_(std::move(request));
  if (answer) {
    ShowAnswer(*answer);
  } else {
    protocol_.clear();
    ui_->answer_label->setText(Text(answer.error()));
  }
  SetWorking(false);
}

void QuickPortsDialog::ShowAnswer(const MappingAnswer& answer) {
  protocol_ = answer.protocol;
  const QString address =
      answer.outside_address.isEmpty() ? Text(message::kAddressUnknown) : answer.outside_address;
  ui_->answer_label->setText(protocol_.isEmpty()
                                 ? Text(message::kRouterSpeaksNot)
                                 : Text(message::kRouterSpeaks).arg(protocol_, address));
  for (qsizetype i = 0; i < asked_.size() && i < answer.results.size(); ++i) {
    rows_->item(rows_of_asked_[i], kState)
        ->setText(protocol_.isEmpty() ? QString() : Text(ResultText(answer.results[i])));
    if (answer.results[i] <= MappingResult::kShorter) {
      NoteOpen(asked_[i]);
    }
  }
  ui_->entries_view->SizeColumns();
}

// In the port list as well. What the router does not have this way may still be on its pages.
void QuickPortsDialog::NoteOpen(const PortEntry& entry) {
  EntryLook look = context_.port_list.LooksOf({entry}).first();
  look.on_router = EntryState::kOnRouter;
  look.differs.clear();
  look.seen = protocol_;
  look.looked_at = QDateTime::currentDateTime();
  context_.port_list.NoteLooks({{.entry = entry, .look = look}});
}

void QuickPortsDialog::SetWorking(bool working) {
  const bool can_ask = !working && !protocol_.isEmpty() && !asked_.isEmpty();
  ui_->open_button->setEnabled(can_ask);
  ui_->close_ports_button->setEnabled(can_ask);
  ui_->time_box->setEnabled(!working);
  ui_->check_button->setEnabled(!working);
  ui_->busy_bar->SetMoving(working);
}

}  // namespace quayline
