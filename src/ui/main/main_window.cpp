// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_window.h"

#include <QDragEnterEvent>

#include <utility>

#include "ui/main/list_menu.h"
#include "ui/main/main_messages.h"
#include "ui/main/missing_features.h"
#include "ui/main/version.h"
#include "ui/toolkit/fields.h"
#include "ui/toolkit/theme.h"
#include "ui_main_window.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kRouterShare = 3;  // of the width, where the login has two
constexpr int kLoginShare = 2;

}  // namespace

MainWindow::MainWindow(AppContext& context, Prompts& prompts, WindowFactory& windows,
                       QWidget* parent)
    : QMainWindow(parent),
      context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::MainWindow>()),
      selection_(context),
      router_panel_(new RouterPanel(context.session, routers_, context.translator, this)),
      login_panel_(new LoginPanel(context.session, this)),
      list_panel_(new PortListPanel(context, prompts, windows, this)),
      detector_(new RouterDetector(context, routers_, prompts, this)),
      first_steps_(new FirstSteps(context, routers_, selection_, windows, prompts, this)),
      runs_(new RouterRuns(context, prompts, windows, *router_panel_, *list_panel_, this)),
      start_up_(context, list_panel_->Commands(), routers_, selection_) {
  setWindowFlags(Qt::Widget);  // the frame is that of the window around it
  ui_->setupUi(this);
  AddPanels();
  SettleFieldsBeforeCommands(this);
  ShareUndoKeys(this);
  menus_ = new MainMenus(context, prompts, *ui_, this);
  new ListMenu(*ui_, context.port_list, *list_panel_, this);
  languages_ = new LanguageChoice(context, prompts, ui_->language_box, this);
  opener_ = new WindowOpener(context, prompts, windows, *ui_, *runs_, this);
  HideMissingFeatures(*this, context.maker_site);
  ConnectPanels();
  ConnectRuns();
  ConnectWindows();
  ConnectDetection();
  ConnectStartUp();
  ConnectGuide();
  SetTimers();
}

MainWindow::~MainWindow() { Unload(); }

std::expected<void, QString> MainWindow::Load() {
  if (auto prepared = start_up_.Prepare(); !prepared) {
    return prepared;
  }
  menus_->ShowOptions();
  start_timer_.start(250ms);
  local_ip_timer_.start(500ms);
  return {};
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  start_up_.NoteWindowShown();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    ShowTotals();
    ShowLocalIp();
  }
}

// Not before the window can be seen: a write of the first half of the start may have failed.
void MainWindow::ReportReplacedDatabases() {
  QStringList notices;
  for (const Notice& notice : context_.databases.Notices()) {
    notices.append(TextOf(notice, context_.translator));
  }
  if (!notices.isEmpty()) {
    prompts_.Notify(this, notices.join(QStringLiteral("\n\n")));
  }
}

void MainWindow::ReportFailedWrites() {
  const auto report = [this] { prompts_.Tell(this, Text(message::kCannotKeepSettings)); };
  if (!context_.settings.StorePending()) {
    report();
  }
  connect(&context_.settings, &Settings::writeFailed, this, report);
}

void MainWindow::Unload() {
  start_timer_.stop();
  reload_timer_.stop();
  local_ip_timer_.stop();
  start_up_.Cancel();
  first_steps_->Finish();
  detector_->Cancel();
  list_panel_->Flush();
  context_.settings.StorePending();
  context_.certificates.StorePending();
  List().Finish();
  runs_->Finish();
  context_.databases.Close();
}

void MainWindow::AddPanels() {
  ui_->top_layout->addWidget(router_panel_, kRouterShare);
  ui_->top_layout->addWidget(login_panel_, kLoginShare);
  ui_->page_layout->insertWidget(1, list_panel_, 1);
  ui_->version_label->setText(QStringLiteral("Quayline v%1").arg(ProgramVersion()));
  ui_->check_button->setIcon(ThemeIcon(QStringLiteral("search")));
  ui_->view_ports_button->setIcon(ThemeIcon(QStringLiteral("ports")));
  ui_->update_button->setIcon(ThemeIcon(QStringLiteral("update"), QPalette::HighlightedText));
}

void MainWindow::UseWidth(int width) {
  const int margins = ui_->page_layout->contentsMargins().left() * 2;
  const int both = router_panel_->minimumSizeHint().width() + ui_->top_layout->spacing() +
                   login_panel_->minimumSizeHint().width();
  ui_->top_layout->setDirection(width < both + margins ? QBoxLayout::TopToBottom
                                                       : QBoxLayout::LeftToRight);
}

void MainWindow::ConnectPanels() {
  connect(router_panel_, &RouterPanel::routerChosen, this,
          [this](int row) { selection_.Select(row, routers_.RouterId(row)); });
  connect(router_panel_, &RouterPanel::edited, this, &MainWindow::StoreSession);
  connect(login_panel_, &LoginPanel::edited, this, &MainWindow::StoreSession);
  connect(login_panel_, &LoginPanel::helpWanted, this, [this] {
    menus_->Explain({message::kLoginHelp1, message::kLoginHelp2, message::kLoginHelp3,
                     message::kLoginHelp4, message::kLoginHelp5});
  });
  connect(login_panel_, &LoginPanel::defaultLoginsWanted, this,
          [this] { menus_->OpenPage(context_.maker_site.DefaultLogins()); });
  connect(&selection_, &RouterSelection::routerRead, this, &MainWindow::ShowSession);
  connect(&selection_, &RouterSelection::pictureChanged, router_panel_, &RouterPanel::ShowPicture);
  connect(list_panel_, &PortListPanel::totalsChanged, this, &MainWindow::ShowTotals);
  setAcceptDrops(true);
}

void MainWindow::ConnectRuns() {
  connect(ui_->view_ports_button, &QPushButton::clicked, runs_, &RouterRuns::ViewPorts);
  connect(ui_->update_button, &QPushButton::clicked, this, &MainWindow::UpdateRouter);
  connect(ui_->update_action, &QAction::triggered, this, &MainWindow::UpdateRouter);
  addAction(ui_->update_action);
  connect(ui_->check_button, &QPushButton::clicked, this, &MainWindow::CheckRouter);
  connect(ui_->check_action, &QAction::triggered, this, &MainWindow::CheckRouter);
}

void MainWindow::UpdateRouter() {
  if (ui_->update_button->isEnabled()) {
    runs_->Update();
  }
}

void MainWindow::CheckRouter() {
  if (ui_->check_button->isEnabled()) {
    runs_->Check();
  }
}

void MainWindow::ConnectWindows() {
  connect(router_panel_, &RouterPanel::routerListWanted, opener_, &WindowOpener::ListRouters);
  connect(router_panel_, &RouterPanel::adaptersWanted, opener_, &WindowOpener::ListAdapters);
  connect(router_panel_, &RouterPanel::routerRequestWanted, this, &MainWindow::RequestRouter);
  connect(ui_->request_router_action, &QAction::triggered, this, &MainWindow::RequestRouter);
  connect(opener_, &WindowOpener::routerChosen, this, &MainWindow::ChooseRouter);
  connect(opener_, &WindowOpener::gatewayChosen, this, [this](const QString& gateway) {
    context_.session.router_ip = gateway;
    ShowSession();
    StoreSession();
  });
  connect(opener_, &WindowOpener::databasesUpdated, this, [this] { reload_timer_.start(1000ms); });
  connect(opener_, &WindowOpener::exitRequested, this, &MainWindow::exitRequested);
  connect(this, &MainWindow::ready, opener_, &WindowOpener::CheckForUpdate);
  connect(ui_->exit_action, &QAction::triggered, this, &MainWindow::exitRequested);
}

// Without a site that takes requests, the user can make the router himself, from the list.
void MainWindow::RequestRouter() {
  if (context_.maker_site.Exists()) {
    menus_->OpenPage(context_.maker_site.RouterRequest());
  } else {
    opener_->ListRouters();
  }
}

void MainWindow::ConnectDetection() {
  connect(router_panel_, &RouterPanel::detectionWanted, detector_, &RouterDetector::DetectForUser);
  connect(detector_, &RouterDetector::found, this, [this](int row) { router_panel_->Choose(row); });
  connect(detector_, &RouterDetector::shown, router_panel_, &RouterPanel::FocusRouter);
}

void MainWindow::ConnectStartUp() {
  SetInputsEnabled(false);
  connect(&start_up_, &StartUp::languagesRead, languages_, &LanguageChoice::Show);
  connect(&start_up_, &StartUp::routersProgress, router_panel_, &RouterPanel::ShowProgress);
  connect(&start_up_, &StartUp::routersLoaded, router_panel_, &RouterPanel::ShowRouterCount);
  connect(&start_up_, &StartUp::sessionRead, this, &MainWindow::ShowSession);
  connect(&start_up_, &StartUp::sessionRead, this, &MainWindow::ReportFailedWrites);
  connect(&start_up_, &StartUp::finished, this, [this] {
    SetInputsEnabled(true);
    router_panel_->FocusRouter();
    ReportReplacedDatabases();
    if (router_panel_->IsAtPlaceholder()) {
      detector_->DetectSilently();
    }
    languages_->OfferDesktopLanguage();
    first_steps_->ShowAtStart();
    Q_EMIT ready();
  });
}

void MainWindow::ConnectGuide() {
  auto* choose_router = new QAction(this);
  connect(choose_router, &QAction::triggered, router_panel_, &RouterPanel::routerListWanted);
  first_steps_->SetActions({.update_list = ui_->update_databases_action,
                            .choose_router = choose_router,
                            .static_ip = ui_->static_ip_action,
                            .choose_ports = ui_->add_ports_action,
                            .update_router = ui_->update_action,
                            .firewall = ui_->add_exceptions_action,
                            .test_ports = ui_->test_ports_action});
  connect(ui_->getting_started_action, &QAction::triggered, first_steps_, &FirstSteps::Show);
  connect(first_steps_, &FirstSteps::helpWanted, menus_, &MainMenus::ShowHelp);
  connect(first_steps_, &FirstSteps::sessionChanged, this, &MainWindow::ShowSession);
}

void MainWindow::SetTimers() {
  start_timer_.setSingleShot(true);
  reload_timer_.setSingleShot(true);
  connect(&reload_timer_, &QTimer::timeout, this, [this] {
    first_steps_->EndPractice();  // the session becomes the one that is stored
    start_up_.Reload();
  });
  connect(&start_timer_, &QTimer::timeout, &start_up_, &StartUp::Begin);
  connect(&local_ip_timer_, &QTimer::timeout, this, &MainWindow::ShowLocalIp);
}

// The stored values would replace what is typed, and be replaced by rows that are added, before
// they are read.
void MainWindow::SetInputsEnabled(bool enabled) {
  for (QWidget* control :
       std::initializer_list<QWidget*>{router_panel_, login_panel_, list_panel_, ui_->check_button,
                                       ui_->view_ports_button, ui_->update_button}) {
    control->setEnabled(enabled);
  }
  for (QAction* action : {ui_->add_ports_action, ui_->add_entry_action, ui_->open_action,
                          ui_->save_action, ui_->update_action, ui_->check_action}) {
    action->setEnabled(enabled);
  }
}

// Also reads the chosen router again.
void MainWindow::ChooseRouter(int id) {
  // The user may just have added it.
  const auto record = routers_.RowOf(id) < 0 ? context_.databases.FindRouter(id) : std::nullopt;
  if (record) {
    routers_.Append({{.id = id, .name = record->routername}});
  }
  if (const int row = routers_.RowOf(id); row > 0) {
    selection_.Select(row, id);
  }
}

// What was seen on one router says nothing of another.
void MainWindow::ForgetLooksOfOtherRouter() {
  const QString router =
      context_.session.chosen_router + QLatin1Char(' ') + RouterKey(context_.session);
  if (std::exchange(looked_router_, router) != router) {
    context_.port_list.ForgetLooks();
  }
}

void MainWindow::StoreSession() {
  context_.session_store.Write(context_.session);
  ForgetLooksOfOtherRouter();
}

void MainWindow::ShowSession() {
  ForgetLooksOfOtherRouter();
  router_panel_->Show();
  login_panel_->Show();
  list_panel_->ShowMaxEntries();
}

void MainWindow::ShowTotals() {
  const PortTotals& totals = Totals();
  ui_->total_entries_label->setText(
      QStringLiteral("%1 (%2)").arg(Text(message::kTotalEntries)).arg(totals.rows));
  ui_->total_ports_label->setText(QStringLiteral("%1 (%2)\n%3 (TCP: %4) (UDP: %5)")
                                      .arg(Text(message::kPortsToBeOpened))
                                      .arg(totals.total)
                                      .arg(Text(message::kPortType))
                                      .arg(totals.tcp)
                                      .arg(totals.udp));
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

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (list_panel_->CanTakeDrop(*event->mimeData())) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  list_panel_->TakeDrop(*event->mimeData());
}

}  // namespace quayline
