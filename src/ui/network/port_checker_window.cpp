// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/port_checker_window.h"

#include <QPlainTextEdit>
#include <QRegularExpressionValidator>
#include <QShortcut>
#include <QStandardItemModel>
#include <QTextBlock>

#include "core/entry_advice.h"
#include "core/entry_firewall.h"
#include "core/program_entries.h"
#include "ui/network/hosted_test_page.h"
#include "ui/network/port_checker_texts.h"
#include "ui/toolkit/address_box.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/fields.h"
#include "ui/toolkit/theme.h"
#include "ui/toolkit/wrapped_column.h"
#include "ui_port_checker_window.h"

namespace quayline {

PortCheckerWindow::PortCheckerWindow(AppContext& context, Prompts& prompts,
                                     const PageHostFactory& make_host, QWidget* parent,
                                     std::function<void()> search_router)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      search_router_(std::move(search_router)),
      ui_(std::make_unique<Ui::PortCheckerWindow>()),
      rows_(new QStandardItemModel(0, kColumns, this)),
      page_(new HostedTestPage(make_host, this)),
      check_(std::make_unique<PortCheck>(*page_, context.maker_site)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  OpenOver(*this, {860, 720});
  SetUpControls();
  ConnectControls();
  ConnectCheck();
  check_->tests = TestsOf(context.port_list.Entries());
  ShowTests();
  if (context.maker_site.TestSite().isValid()) {
    page_->Open(context.maker_site.PortTest(false));  // so that the first test finds it loaded
  }
  (check_->tests.isEmpty() ? static_cast<QWidget*>(ui_->port_edit) : ui_->begin_button)->setFocus();
}

// The check listens on a port and uses the page.
PortCheckerWindow::~PortCheckerWindow() { check_.reset(); }

void PortCheckerWindow::SetUpControls() {
  ui_->ports_view->setModel(rows_);
  WrapColumn(*ui_->ports_view, kOpen);
  rows_->setHorizontalHeaderLabels({Text(message::kPortColumn), QString(),
                                    Text(message::kStatusColumn), Text(message::kOpenColumn)});
  static const QRegularExpression digits(QStringLiteral("[0-9]*"));
  ui_->port_edit->setValidator(new QRegularExpressionValidator(digits, this));
  SelectAllOnClick(ui_->port_edit);
  FillLocalAddresses(*ui_->address_box, ForwardableAddresses(context_.adapters.AddressTable()));
  ui_->working_label->hide();
  ui_->browser_frame->hide();
  if (QWidget* view = page_->Widget()) {
    ui_->browser_layout->addWidget(view);
  }
  ui_->status_edit->setPlainText(Text(message::kPageStatusBegin));
  ui_->errors_edit->setPlainText(Text(message::kErrorStatus));
  ui_->help_label->setVisible(context_.maker_site.Exists());
  ui_->help_link->setVisible(context_.maker_site.Exists());
  if (const QString site = context_.settings.Value(setting::kTestSite); !site.isEmpty()) {
    context_.maker_site.test_site = site;
  }
  ui_->site_edit->setText(context_.maker_site.TestSite().toDisplayString());
}

void PortCheckerWindow::ConnectControls() {
  connect(ui_->add_button, &QPushButton::clicked, this, &PortCheckerWindow::AddPort);
  connect(ui_->remove_button, &QPushButton::clicked, this, &PortCheckerWindow::RemovePort);
  connect(ui_->begin_button, &QPushButton::clicked, this, &PortCheckerWindow::Begin);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->site_edit, &QLineEdit::editingFinished, this, &PortCheckerWindow::TakeSite);
  connect(ui_->help_link, &LinkLabel::clicked, this,
          [this] { context_.desktop.OpenInBrowser(context_.maker_site.PortTestHelp()); });
  auto* remove = new QShortcut(QKeySequence(Qt::Key_Delete), ui_->ports_view);
  remove->setContext(Qt::WidgetShortcut);
  connect(remove, &QShortcut::activated, this, &PortCheckerWindow::RemovePort);
}

void PortCheckerWindow::ConnectCheck() {
  connect(check_.get(), &PortCheck::changed, this, &PortCheckerWindow::OnChanged);
  connect(check_.get(), &PortCheck::waitingForResult, this,
          [this] { AddLine(*ui_->status_edit, Text(message::kWaitingForResults)); });
  connect(check_.get(), &PortCheck::heard, this, [this](const Sentence& line) {
    ui_->arrivals_edit->appendPlainText(TextOf(line, context_.translator));
  });
  connect(check_.get(), &PortCheck::ended, this, [this] {
    ui_->working_label->setText(Text(message::kCheckDone));
    SetWorking(false);
    firewall_look_.Start(LookAtFirewall());
  });
  connect(page_, &HostedTestPage::statusChanged, this, [this](const QString& text) {
    if (!text.isEmpty() && text != last_status_) {
      last_status_ = text;
      AddLine(*ui_->status_edit, Text(message::kPageStatus) + text);
    }
  });
  connect(page_, &HostedTestPage::pageFailed, this,
          [this](const QString& url, const QString& status) {
            AddLine(*ui_->errors_edit,
                    Text(message::kErrorStatus) + QStringLiteral("%1 (%2)").arg(status, url));
          });
}

void PortCheckerWindow::TakeSite() {
  const QString typed = ui_->site_edit->text().trimmed();
  if (!ui_->site_edit->isModified()) {
    return;
  }
  ui_->site_edit->setModified(false);
  const QUrl url(typed.contains(QLatin1String("://")) ? typed : QStringLiteral("http://") + typed);
  const bool is_site =
      url.isValid() && !url.host().isEmpty() &&
      (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
  constexpr auto kKept =
      QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment;
  context_.maker_site.test_site = is_site ? url.toString(kKept) : QString();
  context_.settings.SetValue(setting::kTestSite, context_.maker_site.test_site);
}

void PortCheckerWindow::AddPort() {
  const QString port = ui_->port_edit->text();
  const auto protocol =
      ui_->protocol_box->currentIndex() == 0 ? SockProtocol::kTcp : SockProtocol::kUdp;
  ui_->port_edit->setFocus();
  if (port.isEmpty()) {
    return;
  }
  for (const PortTest& test : check_->tests) {
    if (test.port == port && test.protocol == protocol) {
      prompts_.Tell(this, Text(message::kPortListedAlready) + QLatin1Char('\n') + port +
                              QLatin1Char(' ') + ProtocolName(protocol));
      return;
    }
  }
  check_->tests.append({.port = port, .protocol = protocol});
  ui_->port_edit->clear();
  ShowTests();
  ui_->ports_view->setCurrentIndex(rows_->index(rows_->rowCount() - 1, kPort));
}

void PortCheckerWindow::RemovePort() {
  const int row = ui_->ports_view->currentIndex().row();
  if (row < 0 || check_->IsRunning()) {
    return;
  }
  prompts_.Ask(this, Text(message::kDeletePortTitle),
               Text(message::kDeletePortQuestion) + QLatin1Char('\n') + check_->tests[row].port,
               [this, row](bool yes) {
                 if (yes) {
                   check_->tests.removeAt(row);
                   ShowTests();
                 }
               });
}

void PortCheckerWindow::Begin() {
  if (check_->tests.isEmpty()) {
    prompts_.Tell(this, Text(message::kPortListEmpty), [this] { ui_->port_edit->setFocus(); });
    return;
  }
  TakeSite();
  if (!context_.maker_site.TestSite().isValid()) {
    prompts_.Tell(this, Text(message::kTypeTestSite), [this] { ui_->site_edit->setFocus(); });
    return;
  }
  ui_->begin_hint_label->hide();
  ui_->browser_frame->show();
  ui_->working_label->setText(Text(message::kCheckWorking));
  ui_->working_label->show();
  SetWorking(true);
  tested_address_ = ui_->address_box->currentText();
  check_->Begin(tested_address_);
}

void PortCheckerWindow::SetWorking(bool working) {
  for (QWidget* control :
       std::initializer_list<QWidget*>{ui_->add_button, ui_->remove_button, ui_->begin_button,
                                       ui_->ports_view, ui_->site_edit}) {
    control->setEnabled(!working);
  }
  ui_->busy_bar->SetMoving(working);
  ui_->ports_view->SizeColumns();
}

void PortCheckerWindow::ShowTests() {
  const int current = ui_->ports_view->currentIndex().row();
  rows_->setRowCount(0);
  for (int row = 0; row < check_->tests.size(); ++row) {
    const PortTest& test = check_->tests[row];
    rows_->appendRow({new QStandardItem(test.port), new QStandardItem(ProtocolName(test.protocol)),
                      new QStandardItem, new QStandardItem});
    ShowTest(row);
  }
  const int last = rows_->rowCount() - 1;
  ui_->ports_view->setCurrentIndex(rows_->index(std::clamp(current, std::min(0, last), last), 0));
  ui_->ports_view->SizeColumns();
}

void PortCheckerWindow::ShowTest(int row) {
  const PortTest& test = check_->tests[row];
  rows_->item(row, kStatus)->setText(StatusOf(test));
  rows_->item(row, kOpen)->setText(ResultOf(test));
}

void PortCheckerWindow::OnChanged(int row) {
  const PortTest& test = check_->tests[row];
  ShowTest(row);
  ui_->ports_view->SizeColumns();
  ui_->ports_view->scrollTo(rows_->index(row, kPort));
  if (test.state == PortTestState::kChecking) {
    ui_->working_label->setText(
        Text(message::kCheckingPort) +
        QStringLiteral(" %1 %2").arg(test.port, ProtocolName(test.protocol)));
  }
  NoteResult(test);
}

void PortCheckerWindow::NoteResult(const PortTest& test) {
  if (test.state != PortTestState::kOpen && test.state != PortTestState::kClosed) {
    return;
  }
  const QString protocol = ProtocolName(test.protocol);
  QList<SeenEntry> seen;
  for (const PortEntry& entry : context_.port_list.Entries()) {
    // What leads to another computer does not arrive here.
    if (entry.start_port == test.port && AddressOf(entry.forwarded_to) == tested_address_ &&
        entry.protocol.contains(protocol, Qt::CaseInsensitive)) {
      EntryLook look = context_.port_list.LooksOf({entry}).first();
      look.outside = VerdictOf(entry, test);
      seen.append({.entry = entry, .look = look});
    }
  }
  context_.port_list.NoteLooks(seen);
}

// One open port says nothing certain of the others of an entry; one that is closed does.
ReachVerdict PortCheckerWindow::VerdictOf(const PortEntry& entry, const PortTest& test) const {
  const bool is_open = test.state == PortTestState::kOpen;
  const QString protocol = ProtocolName(test.protocol);
  if (entry.start_port == entry.end_port && entry.protocol.toUpper() == protocol) {
    return {.works = is_open, .words = {is_open ? message::kReached : message::kNotReached}};
  }
  const Message& words = is_open ? message::kPartReached : message::kPartNotReached;
  return {.works = is_open ? std::nullopt : std::optional(false),
          .words = {words, {protocol + QLatin1Char(' ') + test.port}}};
}

Task<> PortCheckerWindow::LookAtFirewall() {
  if (context_.firewall != nullptr) {
    const FirewallAnswer answer = co_await context_.firewall->Look(Firewall::Asking::kNever);
    context_.port_list.NoteLooks(
        FirewallLooksOf(context_.port_list.SeenOf(context_.port_list.Entries()),
                        context_.adapters.AddressTable(), answer)
            .seen);
  }
  Advise();
}

void PortCheckerWindow::Advise() {
  for (const EntryLook& look : context_.port_list.LooksOf(context_.port_list.Entries())) {
    const bool is_shut = look.outside && look.outside->works == false;
    if (is_shut && AdviceOf(look) == EntryAdvice::kOpenFirewall) {
      prompts_.TellTitled(this, windowTitle(), Text(*AdviceText(look)));
      return;
    }
    if (AdviceOf(look) == EntryAdvice::kSecondRouter) {
      prompts_.Ask(this, windowTitle(), Text(*AdviceText(look)), [this](bool yes) {
        if (yes) {
          search_router_();
        }
      });
      return;
    }
  }
}

void PortCheckerWindow::AddLine(QPlainTextEdit& log, const QString& line) {
  log.appendPlainText(line);
  log.setTextCursor(QTextCursor(log.document()->lastBlock()));
}

QString PortCheckerWindow::StatusOf(const PortTest& test) const {
  switch (test.state) {
    case PortTestState::kListening:
    case PortTestState::kChecking:
      return Text(message::kListening);
    case PortTestState::kInUse:
      return Text(message::kPortInUse);
    default:
      return {};
  }
}

QString PortCheckerWindow::ResultOf(const PortTest& test) const {
  switch (test.state) {
    case PortTestState::kAdded:
    case PortTestState::kListening:
      return {};
    case PortTestState::kInUse:
      return Text(message::kCloseOtherPrograms);
    case PortTestState::kChecking:
      return Text(message::kChecking);
    case PortTestState::kOpen:
      return Text(message::kPortOpen);
    case PortTestState::kClosed:
      return Text(message::kPortClosed);
    case PortTestState::kNotTested:
      return Text(message::kNotTested);
  }
  return {};
}

// Called however the window is closed: the port is closed at once.
void PortCheckerWindow::done(int result) {
  check_->disconnect(this);
  check_.reset();
  firewall_look_.Cancel();
  QDialog::done(result);
}

}  // namespace quayline
