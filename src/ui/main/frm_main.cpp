// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/frm_main.h"

#include <QCompleter>
#include <QLineEdit>
#include <QLocale>
#include <QShortcut>

#include "ui/main/main_messages.h"
#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_main.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

QString InBrackets(const QString& text) { return QStringLiteral(" (%1)").arg(text); }

}  // namespace

FrmMain::FrmMain(AppContext& context, Prompts& prompts, WindowFactory windows, QWidget* parent)
    : QMainWindow(parent),
      context_(context),
      prompts_(prompts),
      windows_(std::move(windows)),
      ui_(std::make_unique<Ui::FrmMain>()),
      selection_(context),
      list_(context, prompts, this),
      start_up_(context, list_, routers_) {
  setWindowFlags(Qt::Widget);  // the frame is that of the window around it
  ui_->setupUi(this);
  DressUp();
  ConnectRouter();
  ConnectLogin();
  ConnectList();
  ConnectAdvancedMenu();
  ConnectRouterWindows();
  ConnectWebPages();
  ConnectStartUp();
  SetTimers();
}

FrmMain::~FrmMain() { Unload(); }

std::expected<void, QString> FrmMain::Load() {
  if (auto prepared = start_up_.Prepare(); !prepared) {
    return prepared;
  }
  ui_->MenuDisablePopups->setChecked(context_.job_options.silent_mode);
  ui_->MenuScriptThrottle->setChecked(context_.job_options.throttle);
  timer1_.start(250ms);
  timer_get_ip_.start(500ms);
  return {};
}

void FrmMain::Unload() {
  timer1_.stop();
  timer3_.stop();
  timer_get_ip_.stop();
  retry_timer_.stop();
  start_up_.Cancel();
  columns_->Flush();
  context_.settings.StorePending();
  list_.Finish();
  delete job_status_.data();
  context_.databases.Close();
}

void FrmMain::DressUp() {
  ui_->lblCurrentVersion->setText(QStringLiteral("Quayline v%1").arg(ProgramVersion()));
  ui_->ImageLogo->setPixmap(ProgramLogo().pixmap(QSize(96, 96), devicePixelRatioF()));
  ui_->Image2->setPixmap(ThemeIcon(QStringLiteral("wait"), QPalette::WindowText)
                             .pixmap(QSize(32, 32), devicePixelRatioF()));
  ui_->Image1->SetEmptyText(Text(message::kNoPicture));
  ShowPicture(RouterPicture::kLogo, {});

  ui_->Command1->setIcon(ThemeIcon(QStringLiteral("add")));
  ui_->Command2->setIcon(ThemeIcon(QStringLiteral("remove")));
  ui_->zCommand6->setIcon(ThemeIcon(QStringLiteral("open")));
  ui_->zCommand5->setIcon(ThemeIcon(QStringLiteral("save")));
  ui_->Command7->setIcon(ThemeIcon(QStringLiteral("ports")));
  ui_->Command8->setIcon(ThemeIcon(QStringLiteral("update"), QPalette::HighlightedText));
  ui_->vkCommand7->setIcon(ThemeIcon(QStringLiteral("help")));
  ui_->vkCommand8->setIcon(ThemeIcon(QStringLiteral("search")));
  ui_->vkCommand9->setIcon(ThemeIcon(QStringLiteral("detect")));

  // The five buttons of the menu bar are those of the menus.
  QMenu* const menus[] = {ui_->menuFile, ui_->menutools, ui_->menuAdvanced, ui_->menuhelp,
                          ui_->menuExtras};
  for (int i = 0; i < static_cast<int>(std::size(menus)); ++i) {
    menus[i]->menuAction()->setObjectName(QStringLiteral("vkCommand%1").arg(i + 1));
  }
}

void FrmMain::ConnectRouter() {
  routers_.Reset(Text(message::kChooseRouter));
  ui_->Combo1->setModel(&routers_);
  auto* completer = new QCompleter(&routers_, ui_->Combo1);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setFilterMode(Qt::MatchContains);
  ui_->Combo1->setCompleter(completer);
  IgnoreWheel(ui_->Combo1);  // a turn over it would choose routers and replace the typed login
  connect(ui_->Combo1, &QComboBox::activated, this, &FrmMain::SelectRouterRow);
  connect(ui_->Combo1->lineEdit(), &QLineEdit::editingFinished, this, &FrmMain::SettleRouter);
  connect(ui_->Combo1, &QComboBox::editTextChanged, this,
          [this](const QString& text) { context_.session.router_name = text; });
  connect(&selection_, &RouterSelection::routerRead, this, [this] {
    ui_->Text2->setText(context_.session.username);
    ui_->Text3->setText(context_.session.password);
    ShowMaxEntries();
  });
  connect(&selection_, &RouterSelection::pictureChanged, this, &FrmMain::ShowPicture);

  connect(ui_->Text1, &QLineEdit::textChanged, this, &FrmMain::OnRouterIpChanged);
  connect(ui_->Text10, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.http_port = text;
    Store(setting::kHttpPort, text);
  });
  connect(ui_->Text10, &QLineEdit::editingFinished, this, [this] {
    const QString trimmed = ui_->Text10->text().trimmed();
    ui_->Text10->setText(trimmed.isEmpty() ? QStringLiteral("80") : trimmed);
  });
  connect(ui_->Combo2, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    context_.session.http_type = text;
    Store(setting::kHttpType, text);
  });
}

void FrmMain::ConnectLogin() {
  connect(ui_->Text2, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.username = text;
    Store(setting::kRouterUsername, text);
  });
  connect(ui_->Text3, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.password = text;
    Store(setting::kRouterPassword, text);
  });
  connect(ui_->Check1, &QCheckBox::toggled, this, [this](bool shown) {
    context_.session.show_password = shown;
    ui_->Text3->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    Store(setting::kShowPassword, QString::number(shown ? 1 : 0));
  });
  connect(ui_->vkCommand7, &QToolButton::clicked, this, [this] {
    Tell({message::kLoginHelp1, message::kLoginHelp2, message::kLoginHelp3, message::kLoginHelp4,
          message::kLoginHelp5});
  });
  connect(ui_->Combo3, &QComboBox::textActivated, this,
          [this](const QString& language) { Store(setting::kLanguage, language); });
}

void FrmMain::ConnectStartUp() {
  SetInputsEnabled(false);
  connect(&start_up_, &StartUp::languagesRead, this,
          [this](const QStringList& languages, const QString& current) {
            ui_->Combo3->clear();
            ui_->Combo3->addItems(languages);
            ui_->Combo3->setCurrentText(current);
          });
  connect(&start_up_, &StartUp::routersProgress, this, [this](int loaded, int total) {
    ui_->progress_bar->setMaximum(std::max(1, total));
    ui_->progress_bar->setValue(loaded);
  });
  connect(&start_up_, &StartUp::routersLoaded, this, [this](int count) {
    ui_->Picture2->hide();
    ui_->Label5->setText(Text(message::kRoutersLoaded) +
                         InBrackets(QLocale(QLocale::English).toString(count)));
  });
  connect(&start_up_, &StartUp::fieldsRead, this, &FrmMain::ShowStoredFields);
  connect(&start_up_, &StartUp::finished, this, [this] {
    SetInputsEnabled(true);
    ui_->Combo1->setFocus();
    if (const QStringList& notices = context_.databases.Notices(); !notices.isEmpty()) {
      prompts_.Notify(this, notices.join(QStringLiteral("\n\n")));
    }
    Q_EMIT ready();
  });
}

void FrmMain::SetTimers() {
  timer1_.setSingleShot(true);
  connect(&timer1_, &QTimer::timeout, &start_up_, &StartUp::Begin);
  timer3_.setSingleShot(true);
  timer3_.setInterval(100ms);
  connect(&timer3_, &QTimer::timeout, this, &FrmMain::ShowTotals);
  connect(&timer_get_ip_, &QTimer::timeout, this, &FrmMain::ShowLocalIp);
  connect(&retry_timer_, &QTimer::timeout, this,
          [this] { NoteStored(context_.settings.StorePending()); });
}

// What is typed before the stored values are there would be overwritten by them.
void FrmMain::SetInputsEnabled(bool enabled) {
  ui_->router_card->setEnabled(enabled);
  ui_->login_card->setEnabled(enabled);
  ui_->Command7->setEnabled(enabled);
  ui_->Command8->setEnabled(enabled);
  SetListEnabled(enabled);
}

void FrmMain::SelectRouterRow(int row) {
  selection_.Select(row, routers_.RouterId(row), ui_->Combo1->currentText());
}

void FrmMain::ShowStoredFields(const StoredFields& fields) {
  const int row = routers_.Find(fields.router);
  ui_->Combo1->setCurrentIndex(row);
  if (row < 0) {
    ui_->Combo1->setEditText(fields.router);
  }
  SelectRouterRow(row);
  if (ui_->Combo1->currentText().isEmpty()) {
    ui_->Combo1->setCurrentIndex(0);
  }
  ui_->Text1->setText(fields.router_ip);
  ui_->Text10->setText(fields.http_port.isEmpty() ? QStringLiteral("80") : fields.http_port);
  ui_->Combo2->setCurrentText(fields.http_type.isEmpty() ? QStringLiteral("http://")
                                                         : fields.http_type);
  ui_->Text2->setText(fields.username);
  ui_->Text3->setText(fields.password);
  ui_->Check1->setChecked(context_.settings.Boolean(setting::kShowPassword, false));
  const QString ip = ui_->Text1->text();
  if (ip.isEmpty() || ip == QStringLiteral("0.0.0.0")) {
    ui_->Text1->setText(DefaultGateway(context_.adapters.List()));
  }
}

void FrmMain::ShowPicture(RouterPicture state, const QImage& picture) {
  ui_->ImageLogo->setVisible(state == RouterPicture::kLogo);
  ui_->Image2->setVisible(state == RouterPicture::kWaiting);
  ui_->Image1->setVisible(state == RouterPicture::kPicture);
  ui_->Image1->SetPicture(picture);
}

void FrmMain::ShowMaxEntries() {
  const QString& entries = context_.session.max_entries;
  ui_->Label9->setText(Text(message::kMaxEntries) +
                       InBrackets(entries.isEmpty() ? QStringLiteral("NA") : entries));
}

void FrmMain::ShowTotals() {
  totals_ = ComputeTotals(context_.port_list.Entries());
  ui_->Label7->setText(Text(message::kTotalEntries) + InBrackets(QString::number(totals_.rows)));
  ui_->Label8->setText(Text(message::kPortsToBeOpened) +
                       InBrackets(QString::number(totals_.total)) + QLatin1Char('\n') +
                       Text(message::kPortType) +
                       QStringLiteral(" (TCP: %1) (UDP: %2)").arg(totals_.tcp).arg(totals_.udp));
}

void FrmMain::ShowLocalIp() {
  timer_get_ip_.setInterval(2500ms);
  const QString& router = context_.session.router_ip;
  // The address on the router's side, which is not that of a tunnel to the internet.
  QString address =
      router.startsWith(QLatin1Char('0')) ? QString() : context_.adapters.LocalAddress(router);
  if (address.isEmpty()) {
    address = context_.adapters.LocalAddress(QString());
  }
  ui_->LabelLocalIP->setText(Text(message::kLocalIp) + QLatin1Char(' ') + address);
}

void FrmMain::OnRouterIpChanged(const QString& typed) {
  const QString address = WithoutScheme(typed);
  if (address != typed) {
    ui_->Text1->setText(address);
    return;
  }
  context_.session.router_ip = address;
  Store(setting::kRouterIp, address);
}

void FrmMain::UpdateRouter() {
  if (!ui_->Command8->isEnabled()) {
    return;
  }
  const bool is_job_open = job_status_ != nullptr && job_status_->isVisible();
  if (is_job_open && context_.job_flags.is_running) {
    prompts_.Ask(this, Text(message::kStartAgainTitle), Text(message::kStartAgainQuestion),
                 [this](bool yes) {
                   if (yes) {
                     StartUpdate();
                   }
                 });
    return;
  }
  StartUpdate();
}

void FrmMain::StartUpdate() {
  SettleRouter();
  if (job_status_ != nullptr && job_status_->isVisible()) {
    job_status_->close();
  }
  QList<PortEntry> entries = context_.port_list.Entries();
  for (const int row : ClampPorts(entries, context_.session)) {
    context_.port_list.Replace(row, entries.at(row));
  }
  const UpdateVerdict verdict = CheckUpdate(entries, context_.session, context_.translator);
  if (verdict.accepted) {
    ShowJob();
  } else {
    ShowRefusal(verdict);
  }
}

void FrmMain::ShowRefusal(const UpdateVerdict& verdict) {
  prompts_.Tell(this, verdict.message);
  if (verdict.row >= 0) {
    ui_->ListView1->setCurrentIndex(context_.port_list.index(verdict.row, 0));
  }
  switch (verdict.focus) {
    case UpdateFocus::kRouter:
      ui_->Combo1->setFocus();
      break;
    case UpdateFocus::kRouterIp:
      ui_->Text1->setFocus();
      break;
    case UpdateFocus::kPortList:
      ui_->ListView1->setFocus();
      break;
    case UpdateFocus::kNone:
      break;
  }
}

void FrmMain::ShowJob() {
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.job_error_grace = 1;
  job_status_ = windows_.job_status();
  job_status_->show();
  job_status_->raise();
  job_status_->activateWindow();
}

// Each key that is typed is stored: the first failure is shown, the next ones while the retries
// last are not.
void FrmMain::NoteStored(bool is_stored) {
  if (is_stored) {
    retry_timer_.stop();
  } else if (!retry_timer_.isActive()) {
    retry_timer_.start(5s);
    prompts_.Tell(this, Text(message::kCannotKeepSettings));
  }
}

// A value that is in the file already is not written again: showing the stored values at the start,
// or choosing a router with the user's own login, writes nothing.
void FrmMain::Store(const char* key, const QString& value) {
  if (context_.settings.Value(key) != value) {
    NoteStored(context_.settings.SetValue(key, value));
  }
}

}  // namespace quayline
