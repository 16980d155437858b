// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/static_address_dialog.h"

#include <QLineEdit>

#include "net/maker_prefixes.h"
#include "ui/network/setup_result_text.h"
#include "ui/network/static_address_texts.h"
#include "ui/toolkit/settle_focus.h"
#include "ui/toolkit/theme.h"
#include "ui_static_address_dialog.h"

namespace quayline {

namespace {

const QString kNone = QStringLiteral("0.0.0.0");

}  // namespace

StaticAddressDialog::StaticAddressDialog(AppContext& context, Prompts& prompts, AddressSetup& setup,
                                         Neighbours& neighbours, QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      setup_(setup),
      changes_(setup, neighbours, context.adapters),
      ui_(std::make_unique<Ui::StaticAddressDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, sizeHint());
  ui_->more_label->setVisible(context.maker_site.Exists());
  ui_->more_link->setVisible(context.maker_site.Exists());
  ConnectButtons();
  connect(ui_->adapter_box, &QComboBox::activated, this, [this] { flow_.Start(ShowAdapter()); });
  flow_.Start(ListAdapters());
}

StaticAddressDialog::~StaticAddressDialog() { flow_.Cancel(); }

void StaticAddressDialog::reject() {
  if (!is_changing_) {
    QDialog::reject();
  }
}

void StaticAddressDialog::ConnectButtons() {
  connect(ui_->random_button, &QPushButton::clicked, this, &StaticAddressDialog::Randomize);
  connect(ui_->current_dns_button, &QPushButton::clicked, this,
          [this] { SetServers(current_.first_server, current_.second_server); });
  connect(ui_->router_dns_button, &QPushButton::clicked, this,
          [this] { SetServers(current_.gateway, kNone); });
  connect(ui_->open_dns_button, &QPushButton::clicked, this, [this] {
    SetServers(QStringLiteral("208.67.222.222"), QStringLiteral("208.67.220.220"));
  });
  connect(ui_->more_link, &LinkLabel::clicked, this,
          [this] { context_.desktop.OpenInBrowser(context_.maker_site.StaticAddressHelp()); });
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  const auto run = [this](Task<> (StaticAddressDialog::*change)()) {
    if (HasAdapter()) {
      flow_.Start((this->*change)());
    }
  };
  ConnectCommand(ui_->enable_button, this, [run] { run(&StaticAddressDialog::Enable); });
  ConnectCommand(ui_->disable_button, this, [run] { run(&StaticAddressDialog::Disable); });
  connect(ui_->random_help_button, &QAbstractButton::clicked, this, [this] {
    prompts_.Tell(this,
                  QStringList{Text(message::kRandomHelp1),
                              Text(message::kRandomHelp2) + QStringLiteral(" 125 - 249"),
                              Text(message::kRandomHelp3),
                              Text(message::kRandomHelp4) + u' ' + Text(message::kRandomHelp5)}
                      .join(u'\n'));
  });
  ConnectHelp(ui_->current_dns_help_button, {message::kCurrentDnsHelp});
  ConnectHelp(ui_->router_dns_help_button, {message::kRouterDnsHelp1, message::kRouterDnsHelp2});
  ConnectHelp(ui_->open_dns_help_button, {message::kOpenDnsHelp1, message::kOpenDnsHelp2});
}

void StaticAddressDialog::ConnectHelp(QAbstractButton* button, QList<Message> lines) {
  connect(button, &QAbstractButton::clicked, this, [this, lines] {
    QStringList texts;
    for (const Message& line : lines) {
      texts.append(Text(line));
    }
    prompts_.Tell(this, texts.join(u'\n'));
  });
}

Task<> StaticAddressDialog::ListAdapters() {
  SetWorking(true, Text(message::kReadingAdapters));
  const auto adapters = co_await setup_.List();
  SetWorking(false);
  ui_->status_label->clear();
  if (!adapters) {
    ShowNothingToDo(SetupResultText(adapters.error(), context_.translator));
    co_return;
  }
  for (const SetupAdapter& adapter : *adapters) {
    ui_->adapter_box->addItem(adapter.description, adapter.index);
  }
  ui_->adapter_box->setCurrentIndex(adapters->size() == 1 ? 0 : -1);
  if (adapters->isEmpty()) {
    ShowNothingToDo(Text(message::kNoAdapters));
  }
  if (adapters->size() == 1) {
    co_await ShowAdapter();
    ui_->address_edit->setText(
        OfferedAddress(ui_->address_edit->text(), context_.settings.Value(setting::kStaticIp)));
  }
}

// Without an adapter each button would only ask for one.
void StaticAddressDialog::ShowNothingToDo(const QString& why) {
  ui_->status_label->setText(why);
  ui_->close_button->setFocus();
  for (QWidget* control :
       std::initializer_list<QWidget*>{ui_->page, ui_->enable_button, ui_->disable_button}) {
    control->setEnabled(false);
  }
}

// What cannot be read stays "0.0.0.0".
Task<> StaticAddressDialog::ShowAdapter() {
  ShowCurrent({});
  ui_->status_label->clear();
  SetWorking(true);
  const auto read = co_await setup_.Read(ui_->adapter_box->currentData().toInt());
  SetWorking(false);
  if (read) {
    ShowCurrent(*read);
    ui_->status_label->setText(
        Text(read->is_automatic ? message::kIsAutomatic : message::kIsFixed));
  }
  Randomize();
  ui_->mask_edit->setText(current_.mask);
  ui_->gateway_edit->setText(current_.gateway);
  SetServers(current_.first_server, current_.second_server);
}

void StaticAddressDialog::ShowCurrent(const AdapterAddresses& current) {
  current_ = current;
  ui_->current_address_label->setText(current.address);
  ui_->current_mask_label->setText(current.mask);
  ui_->current_gateway_label->setText(current.gateway);
  ui_->current_first_server_label->setText(current.first_server);
  ui_->current_second_server_label->setText(current.second_server);
}

bool StaticAddressDialog::HasAdapter() {
  if (ui_->adapter_box->currentIndex() < 0) {
    prompts_.Tell(this, Text(message::kSelectAdapterFirst));
    ui_->adapter_box->setFocus();
    return false;
  }
  return true;
}

void StaticAddressDialog::Randomize() {
  if (HasAdapter()) {
    ui_->address_edit->setText(RandomAddress(current_.address));
  }
}

void StaticAddressDialog::SetServers(const QString& first, const QString& second) {
  ui_->first_server_edit->setText(first);
  ui_->second_server_edit->setText(second);
}

Task<> StaticAddressDialog::Enable() {
  is_changing_ = true;
  SetWorking(true, Text(message::kCheckingAndSetting));
  const TypedAddresses typed{.address = ui_->address_edit->text(),
                             .mask = ui_->mask_edit->text(),
                             .gateway = ui_->gateway_edit->text(),
                             .first_server = ui_->first_server_edit->text(),
                             .second_server = ui_->second_server_edit->text()};
  const StaticOutcome outcome =
      co_await changes_.Set(ui_->adapter_box->currentData().toInt(), typed);
  SetWorking(false);
  is_changing_ = false;
  if (outcome.problem) {
    ShowProblem(*outcome.problem);
  } else if (!outcome.taken_by.isEmpty()) {
    ShowTaken(outcome.taken_by);
  } else {
    if (outcome.IsDone()) {
      context_.settings.SetValue(setting::kStaticIp, typed.address.trimmed());
    }
    End(outcome.result);
  }
}

Task<> StaticAddressDialog::Disable() {
  is_changing_ = true;
  SetWorking(true, Text(message::kMakingAutomatic));
  const SetupResult result = co_await setup_.SetAutomatic(ui_->adapter_box->currentData().toInt());
  SetWorking(false);
  is_changing_ = false;
  End(result);
}

void StaticAddressDialog::End(const SetupResult& result) {
  if (!result.IsDone()) {
    prompts_.Tell(this, SetupResultText(result, context_.translator));
    return;
  }
  const auto close_window = [this] {
    prompts_.Tell(this, Text(message::kStaticDone), [this] { accept(); });
  };
  if (result.code == SetupCode::kRestartNeeded) {
    prompts_.Tell(this, Text(message::kRebootRequired), close_window);
  } else {
    close_window();
  }
}

void StaticAddressDialog::ShowProblem(const AddressProblem& problem) {
  QLineEdit* const fields[] = {ui_->address_edit, ui_->mask_edit, ui_->gateway_edit,
                               ui_->first_server_edit, ui_->second_server_edit};
  MarkField(fields[static_cast<int>(problem.field)], Text(FaultText(problem.fault)));
}

void StaticAddressDialog::ShowTaken(const QByteArray& hardware_address) {
  const QString maker = MakerOf(hardware_address);
  const Message& pattern = !maker.isEmpty()             ? message::kTakenBy
                           : IsMadeUp(hardware_address) ? message::kTakenByMadeUp
                                                        : message::kTakenByUnknown;
  QString origin = Text(pattern).arg(MakerPrefix(hardware_address));
  origin = maker.isEmpty() ? origin : origin.arg(maker);
  MarkField(ui_->address_edit,
            Text(message::kTaken).arg(HardwareAddressText(hardware_address), origin));
}

void StaticAddressDialog::MarkField(QLineEdit* field, const QString& text) {
  if (note_) {
    note_->ClearProblem();
    delete note_;
  }
  ui_->status_label->clear();
  note_ = new FieldNote(ui_->status_label, field);
  note_->ShowProblem(text);
  field->setFocus();
  field->selectAll();
}

void StaticAddressDialog::SetWorking(bool working, const QString& status) {
  if (working) {
    if (note_) {
      note_->ClearProblem();
      delete note_;
    }
    ui_->status_label->setText(status);
  } else if (is_changing_) {
    ui_->status_label->clear();
  }
  ui_->page->setEnabled(!working);
  ui_->enable_button->setEnabled(!working);
  ui_->disable_button->setEnabled(!working);
  ui_->close_button->setEnabled(!is_changing_ || !working);
  ui_->busy_bar->SetMoving(working);
}

}  // namespace quayline
