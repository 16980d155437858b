// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/main_window.h"

#include <QDate>
#include <QDialog>
#include <QDragEnterEvent>

#include <algorithm>
#include <array>
#include <utility>

#include "i18n/language_locale.h"
#include "ui/main/main_messages.h"
#include "ui/main/missing_features.h"
#include "ui/main/version.h"
#include "ui/toolkit/fields.h"
#include "ui/toolkit/theme.h"
#include "ui_main_window.h"
#include "update/update_site.h"

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
      windows_(windows),
      ui_(std::make_unique<Ui::MainWindow>()),
      selection_(context),
      router_panel_(new RouterPanel(context.session, routers_, context.translator, this)),
      login_panel_(new LoginPanel(context.session, this)),
      list_panel_(new PortListPanel(context, prompts, windows, this)),
      detector_(new RouterDetector(context, routers_, prompts, this)),
      first_steps_(new FirstSteps(context, routers_, selection_, windows, prompts, this)),
      start_up_(context, list_panel_->Commands(), routers_, selection_) {
  setWindowFlags(Qt::Widget);  // the frame is that of the window around it
  ui_->setupUi(this);
  AddPanels();
  SettleFieldsBeforeCommands(this);
  ShareUndoKeys(this);
  menus_ = new MainMenus(context, prompts, *ui_, this);
  HideMissingFeatures(*this, context.maker_site);
  ConnectPanels();
  ConnectRouterWindows();
  ConnectComputerWindows();
  ConnectDetection();
  ConnectList();
  ConnectListMenu();
  ConnectUpdates();
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

void MainWindow::UseLanguage(const QString& choice) {
  context_.settings.SetValue(setting::kLanguage, choice);
  context_.translator.Choose(choice);
}

// The question and its answers are in the language that is offered.
void MainWindow::OfferDesktopLanguage() {
  if (context_.settings.IsSet(setting::kLanguage)) {
    return;
  }
  const QStringList choices = context_.translator.AvailableLanguages();
  QStringList names;
  for (const QString& choice : choices) {
    names.append(context_.translator.LanguageOf(choice));
  }
  const qsizetype offered = names.indexOf(LanguageOfDesktop(context_.desktop_locale, names));
  if (offered <= 0) {
    return;  // unknown, or English
  }
  Translator texts{QString()};
  texts.SetFolder(context_.translator.Folder());
  texts.SetLanguage(names.at(offered));
  const QString own_name = choices.at(offered).section(QStringLiteral(" | "), 1);
  prompts_.AskChoice(this, texts.Text(message::kLanguageTitle),
                     texts.Text(message::kLanguageQuestion).arg(own_name),
                     {QStringLiteral("English"), own_name},
                     [this, choice = choices.at(offered)](qsizetype answer) {
                       const QString used = answer == 1 ? choice : QString::fromLatin1(kEnglish);
                       ui_->language_box->setCurrentText(used);
                       UseLanguage(used);
                     });
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
  delete check_window_.data();
  delete job_window_.data();
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
  connect(ui_->language_box, &QComboBox::textActivated, this, &MainWindow::UseLanguage);
}

void MainWindow::ConnectRouterWindows() {
  connect(router_panel_, &RouterPanel::routerListWanted, this, &MainWindow::ListRouters);
  connect(router_panel_, &RouterPanel::routerRequestWanted, this, &MainWindow::RequestRouter);
  connect(ui_->request_router_action, &QAction::triggered, this, &MainWindow::RequestRouter);
  connect(router_panel_, &RouterPanel::adaptersWanted, this, [this] {
    const auto take = [this](const QString& gateway) {
      context_.session.router_ip = gateway;
      ShowSession();
      StoreSession();
    };
    windows_.Adapters(this, take)->open();
  });
  connect(ui_->view_scripts_action, &QAction::triggered, this, [this] {
    if (IsRouterKnown()) {
      windows_.Scripts(this, [this] { ChooseRouter(context_.session.router_id); })->open();
    }
  });
  connect(ui_->test_ports_action, &QAction::triggered, this,
          [this] { windows_.PortChecker(this)->open(); });
  connect(ui_->static_ip_action, &QAction::triggered, this,
          [this] { windows_.StaticAddress(this)->open(); });
  connect(ui_->quick_ports_action, &QAction::triggered, this,
          [this] { windows_.QuickPorts(this)->open(); });
  connect(ui_->view_ports_button, &QPushButton::clicked, this, &MainWindow::ViewPorts);
  connect(ui_->update_button, &QPushButton::clicked, this, &MainWindow::UpdateRouter);
  connect(ui_->update_action, &QAction::triggered, this, &MainWindow::UpdateRouter);
  addAction(ui_->update_action);
  connect(ui_->check_button, &QPushButton::clicked, this, &MainWindow::CheckRouter);
  connect(ui_->check_action, &QAction::triggered, this, &MainWindow::CheckRouter);
}

void MainWindow::ListRouters() {
  windows_.RouterList(this, [this](int id) { ChooseRouter(id); })->open();
}

// Without a site that takes requests, the user can make the router himself, from the list.
void MainWindow::RequestRouter() {
  if (context_.maker_site.Exists()) {
    menus_->OpenPage(context_.maker_site.RouterRequest());
  } else {
    ListRouters();
  }
}

void MainWindow::ConnectComputerWindows() {
  const std::pair<QAction*, ComputerWindow> windows[] = {
      {ui_->add_exceptions_action, ComputerWindow::kAddExceptions},
      {ui_->remove_exceptions_action, ComputerWindow::kRemoveExceptions},
      {ui_->show_exceptions_action, ComputerWindow::kShowExceptions},
  };
  for (const auto& [action, window] : windows) {
    connect(action, &QAction::triggered, this,
            [this, wanted = window] { windows_.OfComputer(this, wanted)->open(); });
  }
  // A page that loads meanwhile would never arrive, and a job reads the databases.
  const std::pair<QAction*, ComputerWindow> repairs[] = {
      {ui_->clear_cache_action, ComputerWindow::kClearCache},
      {ui_->repair_browser_action, ComputerWindow::kRepairBrowser},
      {ui_->repair_databases_action, ComputerWindow::kRepairDatabases},
  };
  for (const auto& [action, window] : repairs) {
    connect(action, &QAction::triggered, this, [this, wanted = window] {
      if (context_.job_flags.is_running) {
        prompts_.Tell(this, Text(kJobRuns));
      } else {
        windows_.OfComputer(this, wanted)->open();
      }
    });
  }
  connect(ui_->open_firewall_action, &QAction::triggered, this, [this] {
    if (context_.firewall == nullptr || !context_.firewall->OpenSettings()) {
      prompts_.Tell(this, Text(message::kNoFirewallProgram));
    }
  });
}

void MainWindow::ConnectDetection() {
  connect(ui_->detect_routers_action, &QAction::triggered, this,
          [this] { windows_.SecondRouter(this)->open(); });
  connect(router_panel_, &RouterPanel::detectionWanted, detector_, &RouterDetector::DetectForUser);
  connect(detector_, &RouterDetector::found, this, [this](int row) { router_panel_->Choose(row); });
  connect(detector_, &RouterDetector::shown, router_panel_, &RouterPanel::FocusRouter);
}

void MainWindow::ConnectList() {
  connect(list_panel_, &PortListPanel::totalsChanged, this, &MainWindow::ShowTotals);
  connect(list_panel_, &PortListPanel::menuWanted, ui_->list_menu,
          [this](const QPoint& place) { ui_->list_menu->popup(place); });
  connect(list_panel_, &PortListPanel::rowsChanged, this, [this] {
    const bool has_rows = context_.port_list.rowCount() > 0;
    for (QAction* action : {ui_->edit_entry_action, ui_->remove_entry_action,
                            ui_->remove_ports_action, ui_->remove_all_action}) {
      action->setEnabled(has_rows);
    }
    ui_->undo_action->setEnabled(List().CanUndo());
    ui_->redo_action->setEnabled(List().CanRedo());
  });
  setAcceptDrops(true);
}

void MainWindow::ConnectListMenu() {
  for (QAction* action : {ui_->add_ports_action, ui_->add_entry_action}) {
    connect(action, &QAction::triggered, list_panel_, &PortListPanel::AddEntries);
  }
  for (QAction* action : {ui_->remove_ports_action, ui_->remove_entry_action}) {
    connect(action, &QAction::triggered, list_panel_, &PortListPanel::RemoveSelected);
  }
  connect(ui_->edit_entry_action, &QAction::triggered, list_panel_, &PortListPanel::EditEntry);
  connect(ui_->remove_all_action, &QAction::triggered, &List(), &ListCommands::RemoveAll);
  connect(ui_->undo_action, &QAction::triggered, &List(), &ListCommands::Undo);
  connect(ui_->redo_action, &QAction::triggered, &List(), &ListCommands::Redo);
  connect(ui_->open_action, &QAction::triggered, &List(), &ListCommands::Open);
  connect(ui_->save_action, &QAction::triggered, &List(), &ListCommands::SaveAs);
  connect(ui_->exit_action, &QAction::triggered, this, &MainWindow::exitRequested);
  list_panel_->AddListAction(ui_->add_entry_action, {QKeySequence(Qt::Key_Insert)});
  list_panel_->AddListAction(ui_->edit_entry_action,
                             {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
  list_panel_->AddListAction(ui_->remove_entry_action, {QKeySequence(QKeySequence::Delete)});
}

void MainWindow::ConnectUpdates() {
  const auto exit = [this] { Q_EMIT exitRequested(); };
  connect(ui_->check_updates_action, &QAction::triggered, this,
          [this, exit] { windows_.ProgramUpdate(this, exit)->open(); });
  connect(ui_->update_databases_action, &QAction::triggered, this, &MainWindow::UpdateDatabases);
  connect(this, &MainWindow::ready, this, [this, exit] {
    if (TakeDailyCheck(context_, QDate::currentDate())) {
      windows_.CheckForUpdate(this, exit);
    }
  });
}

void MainWindow::UpdateDatabases() {
  if (context_.job_flags.is_running) {  // it reads them
    prompts_.Tell(this, Text(kJobRuns));
    return;
  }
  if (!FindUpdateSite(context_).Exists()) {
    prompts_.Tell(this, Text(message::kNoDatabaseSite));
    return;
  }
  const auto update = [this](bool yes) {
    if (yes) {
      windows_.DatabaseUpdate(this, [this] { reload_timer_.start(1000ms); })->open();
    }
  };
  prompts_.Ask(
      this, QStringLiteral("Quayline"),
      Text(message::kOverwriteDatabases) + QLatin1Char('\n') + Text(message::kContinueQuestion),
      update);
}

void MainWindow::ConnectStartUp() {
  SetInputsEnabled(false);
  connect(&start_up_, &StartUp::languagesRead, this,
          [this](const QStringList& languages, const QString& current) {
            ui_->language_box->clear();
            ui_->language_box->addItems(languages);
            ui_->language_box->setCurrentText(current);
          });
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
    OfferDesktopLanguage();
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

// What is done with a router is done with the chosen one, whatever is typed in its place.
bool MainWindow::IsRouterKnown() {
  if (context_.session.is_name_unknown) {
    prompts_.Tell(this, Text(kNoSuchRouter).arg(context_.session.router_name));
    router_panel_->FocusRouter();
  }
  return !context_.session.is_name_unknown;
}

bool MainWindow::CanOpenRouter() {
  if (!IsRouterKnown()) {
    return false;
  }
  if (context_.session.router_ip.startsWith(QLatin1Char('0'))) {
    prompts_.Tell(this, Text(kSetRouterIp));
    router_panel_->FocusAddress();
    return false;
  }
  if (context_.job_flags.is_running) {
    prompts_.Tell(this, Text(kJobRuns));
    return false;
  }
  return true;
}

void MainWindow::ViewPorts() {
  if (!CanOpenRouter()) {
    return;
  }
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.view_error_grace = 1;
  windows_.PageView(this)->open();
}

void MainWindow::CheckRouter() {
  if (!ui_->check_button->isEnabled() || !CanOpenRouter()) {
    return;
  }
  if (context_.port_list.rowCount() == 0) {
    prompts_.Tell(this, Text(message::kNothingToCheck));
    return;
  }
  if (context_.session.update_script.isEmpty() && context_.session.view_script.isEmpty()) {
    prompts_.Tell(this, Text(message::kChooseRouterToCheck));
    router_panel_->FocusRouter();
    return;
  }
  // The window of an update stays: its rules may be taken back, and its report saved.
  if (check_window_ != nullptr && check_window_->isVisible()) {
    check_window_->close();
  }
  ShowJob(check_window_, windows_.RouterCheck());
}

void MainWindow::UpdateRouter() {
  if (!ui_->update_button->isEnabled()) {
    return;
  }
  const bool is_job_open = std::ranges::any_of(
      std::array{job_window_, check_window_},
      [](const QPointer<QWidget>& window) { return window != nullptr && window->isVisible(); });
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
  QWidget* former = job_window_;
  for (const QPointer<QWidget>& window : {job_window_, check_window_}) {
    if (window != nullptr && window->isVisible()) {
      window->close();
    }
  }
  QList<PortEntry> entries = context_.port_list.Entries();
  for (const int row : ClampPorts(entries, context_.session)) {
    context_.port_list.Replace(row, entries.at(row));
  }
  const UpdateVerdict verdict = CheckUpdate(entries, context_.session, context_.translator);
  if (verdict.accepted) {
    ShowJob(job_window_, windows_.Job(former));
  } else {
    ShowRefusal(verdict);
  }
}

void MainWindow::ShowRefusal(const UpdateVerdict& verdict) {
  prompts_.Tell(this, verdict.message);
  if (verdict.row >= 0) {
    list_panel_->SelectRow(verdict.row);
  }
  switch (verdict.focus) {
    case UpdateFocus::kRouter:
      router_panel_->FocusRouter();
      break;
    case UpdateFocus::kRouterIp:
      router_panel_->FocusAddress();
      break;
    case UpdateFocus::kPortList:
      list_panel_->FocusList();
      break;
    case UpdateFocus::kNone:
      break;
  }
}

void MainWindow::ShowJob(QPointer<QWidget>& place, QWidget* window) {
  context_.job_flags.SetJobStopRequested(false);
  context_.job_flags.SetJobDebugMode(false);
  context_.job_flags.job_error_grace = 1;
  place = window;
  window->show();
  window->raise();
  window->activateWindow();
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
