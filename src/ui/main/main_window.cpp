// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_window.h"

#include <QCompleter>
#include <QLineEdit>
#include <QLocale>
#include <QShortcut>

#include "ui/main/main_messages.h"
#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui_main_window.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

QString InBrackets(const QString& text) { return QStringLiteral(" (%1)").arg(text); }

}  // namespace

MainWindow::MainWindow(AppContext& context, Prompts& prompts, WindowFactory windows,
                       QWidget* parent)
    : QMainWindow(parent),
      context_(context),
      prompts_(prompts),
      windows_(std::move(windows)),
      ui_(std::make_unique<Ui::MainWindow>()),
      selection_(context),
      list_(context, prompts, this),
      start_up_(context, list_, routers_) {
  setWindowFlags(Qt::Widget);  // it is a child of MainFrame
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

MainWindow::~MainWindow() { Unload(); }

std::expected<void, QString> MainWindow::Load() {
  if (auto prepared = start_up_.Prepare(); !prepared) {
    return prepared;
  }
  ui_->silent_mode_action->setChecked(context_.job_options.silent_mode);
  ui_->throttle_action->setChecked(context_.job_options.throttle);
  start_timer_.start(250ms);
  local_ip_timer_.start(500ms);
  return {};
}

void MainWindow::Unload() {
  start_timer_.stop();
  totals_timer_.stop();
  local_ip_timer_.stop();
  retry_timer_.stop();
  start_up_.Cancel();
  columns_->Flush();
  context_.settings.StorePending();
  context_.certificates.StorePending();
  list_.Finish();
  delete job_window_.data();
  context_.databases.Close();
}

void MainWindow::DressUp() {
  ui_->version_label->setText(QStringLiteral("Quayline v%1").arg(ProgramVersion()));
  ui_->logo_label->setPixmap(ProgramLogo().pixmap(QSize(96, 96), devicePixelRatioF()));
  ui_->image_wait_label->setPixmap(ThemeIcon(QStringLiteral("wait"), QPalette::WindowText)
                                       .pixmap(QSize(32, 32), devicePixelRatioF()));
  ui_->router_image->SetEmptyText(Text(message::kNoPicture));
  ShowPicture(RouterPicture::kLogo, {});

  ui_->add_button->setIcon(ThemeIcon(QStringLiteral("add")));
  ui_->remove_button->setIcon(ThemeIcon(QStringLiteral("remove")));
  ui_->open_button->setIcon(ThemeIcon(QStringLiteral("open")));
  ui_->save_button->setIcon(ThemeIcon(QStringLiteral("save")));
  ui_->view_ports_button->setIcon(ThemeIcon(QStringLiteral("ports")));
  ui_->update_button->setIcon(ThemeIcon(QStringLiteral("update"), QPalette::HighlightedText));
  ui_->login_help_button->setIcon(ThemeIcon(QStringLiteral("help")));
  ui_->router_list_button->setIcon(ThemeIcon(QStringLiteral("search")));
  ui_->detect_router_button->setIcon(ThemeIcon(QStringLiteral("detect")));
}

void MainWindow::ConnectRouter() {
  routers_.Reset(Text(message::kChooseRouter));
  ui_->router_box->setModel(&routers_);
  auto* completer = new QCompleter(&routers_, ui_->router_box);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setFilterMode(Qt::MatchContains);
  ui_->router_box->setCompleter(completer);
  IgnoreWheel(
      ui_->router_box);  // a turn over it would choose another router and replace the typed login
  connect(ui_->router_box, &QComboBox::activated, this, &MainWindow::SelectRouterRow);
  connect(ui_->router_box->lineEdit(), &QLineEdit::editingFinished, this,
          &MainWindow::SettleRouter);
  connect(ui_->router_box, &QComboBox::editTextChanged, this,
          [this](const QString& text) { context_.session.router_name = text; });
  connect(&selection_, &RouterSelection::routerRead, this, [this] {
    ui_->username_edit->setText(context_.session.username);
    ui_->password_edit->setText(context_.session.password);
    ShowMaxEntries();
  });
  connect(&selection_, &RouterSelection::pictureChanged, this, &MainWindow::ShowPicture);

  connect(ui_->router_ip_edit, &QLineEdit::textChanged, this, &MainWindow::OnRouterIpChanged);
  connect(ui_->http_port_edit, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.http_port = text;
    Store(setting::kHttpPort, text);
  });
  connect(ui_->http_port_edit, &QLineEdit::editingFinished, this, [this] {
    const QString trimmed = ui_->http_port_edit->text().trimmed();
    ui_->http_port_edit->setText(trimmed.isEmpty() ? QStringLiteral("80") : trimmed);
  });
  connect(ui_->http_type_box, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    context_.session.http_type = text;
    Store(setting::kHttpType, text);
  });
}

void MainWindow::ConnectLogin() {
  connect(ui_->username_edit, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.username = text;
    Store(setting::kRouterUsername, text);
  });
  connect(ui_->password_edit, &QLineEdit::textChanged, this, [this](const QString& text) {
    context_.session.password = text;
    Store(setting::kRouterPassword, text);
  });
  connect(ui_->show_password_check, &QCheckBox::toggled, this, [this](bool shown) {
    context_.session.show_password = shown;
    ui_->password_edit->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    Store(setting::kShowPassword, QString::number(shown ? 1 : 0));
  });
  connect(ui_->login_help_button, &QToolButton::clicked, this, [this] {
    Tell({message::kLoginHelp1, message::kLoginHelp2, message::kLoginHelp3, message::kLoginHelp4,
          message::kLoginHelp5});
  });
  connect(ui_->language_box, &QComboBox::textActivated, this,
          [this](const QString& language) { Store(setting::kLanguage, language); });
}

void MainWindow::ConnectStartUp() {
  SetInputsEnabled(false);
  connect(&start_up_, &StartUp::languagesRead, this,
          [this](const QStringList& languages, const QString& current) {
            ui_->language_box->clear();
            ui_->language_box->addItems(languages);
            ui_->language_box->setCurrentText(current);
          });
  connect(&start_up_, &StartUp::routersProgress, this, [this](int loaded, int total) {
    ui_->progress_bar->setMaximum(std::max(1, total));
    ui_->progress_bar->setValue(loaded);
  });
  connect(&start_up_, &StartUp::routersLoaded, this, [this](int count) {
    ui_->loading_frame->hide();
    ui_->router_count_label->setText(Text(message::kRoutersLoaded) +
                                     InBrackets(QLocale(QLocale::English).toString(count)));
  });
  connect(&start_up_, &StartUp::fieldsRead, this, &MainWindow::ShowStoredFields);
  connect(&start_up_, &StartUp::finished, this, [this] {
    SetInputsEnabled(true);
    ui_->router_box->setFocus();
    if (const QStringList& notices = context_.databases.Notices(); !notices.isEmpty()) {
      prompts_.Notify(this, notices.join(QStringLiteral("\n\n")));
    }
    Q_EMIT ready();
  });
}

void MainWindow::SetTimers() {
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, &start_up_, &StartUp::Begin);
  totals_timer_.setSingleShot(true);
  totals_timer_.setInterval(100ms);
  connect(&totals_timer_, &QTimer::timeout, this, &MainWindow::ShowTotals);
  connect(&local_ip_timer_, &QTimer::timeout, this, &MainWindow::ShowLocalIp);
  connect(&retry_timer_, &QTimer::timeout, this,
          [this] { NoteStored(context_.settings.StorePending()); });
}

// What is typed before the stored values are loaded would be overwritten by them.
void MainWindow::SetInputsEnabled(bool enabled) {
  ui_->router_card->setEnabled(enabled);
  ui_->login_card->setEnabled(enabled);
  ui_->view_ports_button->setEnabled(enabled);
  ui_->update_button->setEnabled(enabled);
  SetListEnabled(enabled);
}

void MainWindow::SelectRouterRow(int row) {
  selection_.Select(row, routers_.RouterId(row), ui_->router_box->currentText());
}

void MainWindow::ShowStoredFields(const StoredFields& fields) {
  const int row = routers_.Find(fields.router);
  ui_->router_box->setCurrentIndex(row);
  if (row < 0) {
    ui_->router_box->setEditText(fields.router);
  }
  SelectRouterRow(row);
  if (ui_->router_box->currentText().isEmpty()) {
    ui_->router_box->setCurrentIndex(0);
  }
  ui_->router_ip_edit->setText(fields.router_ip);
  ui_->http_port_edit->setText(fields.http_port.isEmpty() ? QStringLiteral("80")
                                                          : fields.http_port);
  ui_->http_type_box->setCurrentText(fields.http_type.isEmpty() ? QStringLiteral("http://")
                                                                : fields.http_type);
  ui_->username_edit->setText(fields.username);
  ui_->password_edit->setText(fields.password);
  ui_->show_password_check->setChecked(context_.settings.Boolean(setting::kShowPassword, false));
  const QString ip = ui_->router_ip_edit->text();
  if (ip.isEmpty() || ip == QStringLiteral("0.0.0.0")) {
    ui_->router_ip_edit->setText(DefaultGateway(context_.adapters.List()));
  }
}

void MainWindow::ShowPicture(RouterPicture state, const QImage& picture) {
  ui_->logo_label->setVisible(state == RouterPicture::kLogo);
  ui_->image_wait_label->setVisible(state == RouterPicture::kWaiting);
  ui_->router_image->setVisible(state == RouterPicture::kPicture);
  ui_->router_image->SetPicture(picture);
}

void MainWindow::ShowMaxEntries() {
  const QString& entries = context_.session.max_entries;
  ui_->max_entries_label->setText(Text(message::kMaxEntries) +
                                  InBrackets(entries.isEmpty() ? QStringLiteral("NA") : entries));
}

void MainWindow::ShowTotals() {
  totals_ = ComputeTotals(context_.port_list.Entries());
  ui_->total_entries_label->setText(Text(message::kTotalEntries) +
                                    InBrackets(QString::number(totals_.rows)));
  ui_->total_ports_label->setText(
      Text(message::kPortsToBeOpened) + InBrackets(QString::number(totals_.total)) +
      QLatin1Char('\n') + Text(message::kPortType) +
      QStringLiteral(" (TCP: %1) (UDP: %2)").arg(totals_.tcp).arg(totals_.udp));
}

void MainWindow::ShowLocalIp() {
  local_ip_timer_.setInterval(2500ms);
  const QString& router = context_.session.router_ip;
  // The address on the router's side, which is not that of a tunnel to the internet.
  QString address =
      router.startsWith(QLatin1Char('0')) ? QString() : context_.adapters.LocalAddress(router);
  if (address.isEmpty()) {
    address = context_.adapters.LocalAddress(QString());
  }
  ui_->local_ip_label->setText(Text(message::kLocalIp) + QLatin1Char(' ') + address);
}

void MainWindow::OnRouterIpChanged(const QString& typed) {
  const QString address = WithoutScheme(typed);
  if (address != typed) {
    ui_->router_ip_edit->setText(address);
    return;
  }
  context_.session.router_ip = address;
  Store(setting::kRouterIp, address);
}

void MainWindow::UpdateRouter() {
  if (!ui_->update_button->isEnabled()) {
    return;
  }
  const bool is_job_open = job_window_ != nullptr && job_window_->isVisible();
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

void MainWindow::StartUpdate() {
  SettleRouter();
  if (job_window_ != nullptr && job_window_->isVisible()) {
    job_window_->close();
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

void MainWindow::ShowRefusal(const UpdateVerdict& verdict) {
  prompts_.Tell(this, verdict.message);
  if (verdict.row >= 0) {
    ui_->port_list_view->setCurrentIndex(context_.port_list.index(verdict.row, 0));
  }
  switch (verdict.focus) {
    case UpdateFocus::kRouter:
      ui_->router_box->setFocus();
      break;
    case UpdateFocus::kRouterIp:
      ui_->router_ip_edit->setFocus();
      break;
    case UpdateFocus::kPortList:
      ui_->port_list_view->setFocus();
      break;
    case UpdateFocus::kNone:
      break;
  }
}

void MainWindow::ShowJob() {
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.job_error_grace = 1;
  job_window_ = windows_.job_status();
  job_window_->show();
  job_window_->raise();
  job_window_->activateWindow();
}

// Every key stroke is stored: the first failure is shown, further ones are not until a retry has
// succeeded.
void MainWindow::NoteStored(bool is_stored) {
  if (is_stored) {
    retry_timer_.stop();
  } else if (!retry_timer_.isActive()) {
    retry_timer_.start(5s);
    prompts_.Tell(this, Text(message::kCannotKeepSettings));
  }
}

// A value that is in the file already is not written again: showing the stored values at the start
// writes nothing.
void MainWindow::Store(const char* key, const QString& value) {
  if (context_.settings.Value(key) != value) {
    NoteStored(context_.settings.SetValue(key, value));
  }
}

}  // namespace quayline
