// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Renders every window to an image: quayline_screenshots FOLDER light|dark [LANGUAGE]. The scale is
// that of QT_SCALE_FACTOR. scripts/screenshots.sh takes all of them.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QJsonArray>
#include <QJsonObject>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>

#include <cstdio>

#include "async/flow.h"
#include "async/wait.h"
#include "dbtool/language_source.h"
#include "platform/fake_firewall.h"
#include "ui/entries/adapter_dialog.h"
#include "ui/job/job_window.h"
#include "ui/job/page_view_window.h"
#include "ui/main/about_dialog.h"
#include "ui/main/getting_started_window.h"
#include "ui/main/help_dialog.h"
#include "ui/main/main_frame.h"
#include "ui/main/splash_screen.h"
#include "ui/network/cache_dialog.h"
#include "ui/network/firewall_change_dialog.h"
#include "ui/network/firewall_list_dialog.h"
#include "ui/network/port_checker_window.h"
#include "ui/network/quick_ports_dialog.h"
#include "ui/network/repair_plans.h"
#include "ui/network/second_router_dialog.h"
#include "ui/network/static_address_dialog.h"
#include "ui/toolkit/theme.h"
#include "ui/toolkit/window_language.h"
#include "ui/tools/new_router_dialog.h"
#include "ui/tools/router_list_dialog.h"
#include "ui/tools/script_dialog.h"
#include "ui/updates/database_update_dialog.h"
#include "ui/updates/program_update_window.h"
#include "ui/window_doubles.h"

namespace quayline::testing {
namespace {

using namespace std::chrono_literals;

QPalette DarkPalette() {
  const QColor window(0x2b, 0x2d, 0x30);
  const QColor base(0x1f, 0x21, 0x23);
  const QColor text(0xe6, 0xe8, 0xea);
  const QColor faint(0x80, 0x85, 0x8a);
  QPalette palette(QColor(0x3b, 0x3e, 0x42), window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Disabled, QPalette::Light, base);  // the shadow of disabled menu items
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

// A page as a router of the plain kind shows it.
QWidget* MakePage() {
  auto* page = new QLabel(QStringLiteral(
      "<h2 style='color:#234'>Port Forwarding</h2><table border=1 cellpadding=4 cellspacing=0>"
      "<tr bgcolor='#dde6ee'><th>Name</th><th>Address</th><th>Start</th><th>End</th></tr>"
      "<tr><td>Ftp</td><td>192.168.1.10</td><td>21</td><td>21</td></tr>"
      "<tr><td>Game</td><td>192.168.1.20</td><td>6881</td><td>6889</td></tr></table>"));
  page->setStyleSheet(QStringLiteral("background: white; color: black; padding: 16px"));
  page->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  return page;
}

// The rules of that page, as the agent reads them: one is there, one has another port.
QJsonObject MakeRows() {
  const QStringList headings{QStringLiteral("Name"), QStringLiteral("Address"),
                             QStringLiteral("Start"), QStringLiteral("End"),
                             QStringLiteral("Protocol")};
  const auto row = [&headings](std::initializer_list<const char*> texts) {
    QJsonArray cells;
    for (const char* text : texts) {
      cells.append(QJsonObject{{QStringLiteral("heading"), headings.at(cells.size())},
                               {QStringLiteral("text"), QLatin1String(text)}});
    }
    return QJsonObject{{QStringLiteral("cells"), cells}};
  };
  QJsonArray tables;
  tables.append(QJsonArray::fromStringList(headings));
  return {{QStringLiteral("headings"), tables},
          {QStringLiteral("rows"),
           QJsonArray{row({"Ftp", "192.168.1.10", "21", "21", "TCP"}),
                      row({"Game", "192.168.1.20", "6881", "6899", "TCP/UDP"})}}};
}

QImage MakeRouterPicture() {
  QImage picture(320, 200, QImage::Format_RGB32);
  picture.fill(QColor(0xf4, 0xf6, 0xf7));
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x46, 0x4c, 0x52));
  painter.drawRoundedRect(40, 110, 240, 56, 10, 10);
  painter.drawRect(70, 30, 8, 84);
  painter.drawRect(242, 30, 8, 84);
  painter.setBrush(QColor(0x7f, 0xd6, 0xc8));
  for (int i = 0; i < 6; ++i) {
    painter.drawEllipse(66 + 24 * i, 132, 10, 10);
  }
  return picture;
}

class EchoesOfTwoRouters final : public Echoes {
 public:
  Task<EchoReply> Send(QString target, int ttl, std::chrono::milliseconds /*limit*/) override {
    const QStringList hops{QStringLiteral("192.168.1.1"), QStringLiteral("10.0.0.1")};
    co_return EchoReply{EchoReply::Kind::kHop, hops.value(ttl - 1, target)};
  }
};

// A program in a language.
struct ShownContext : AppContext {
  ShownContext(ProgramFolder& program, const QString& language)
      : AppContext(program.dir.path(), program.adapters, program.desktop),
        window_language(*qApp, translator) {
    translator.Choose(language);
  }
  WindowLanguage window_language;
};

class Photographer final {
 public:
  Photographer(QString folder, QString palette, QString language)
      : folder_(std::move(folder)), palette_(std::move(palette)), language_(std::move(language)) {
    if (const auto made = dbtool::WriteLanguages(QStringLiteral(QUAYLINE_SOURCE_DIR "/data"),
                                                 program_.dir.path());
        !made) {
      std::fprintf(stderr, "%s\n", qPrintable(made.error()));
    }
    QList<RouterRecord> routers;
    for (int i = 1; i <= 1200; ++i) {
      routers.append(RouterRow(i, QStringLiteral("Harbour HB-%1").arg(i), QStringLiteral("admin")));
      const QStringList ways{QStringLiteral("rebuild"), QStringLiteral("documentation"),
                             QStringLiteral("real"), QString()};
      routers.last().routertested = ways.at(i % ways.size());
      routers.last().routerversions = QStringLiteral("1.0 to 2.4");
    }
    QStringList many;
    for (int port = 20000; port < 20400; port += 4) {
      many.append(QStringLiteral("%1-%2").arg(port).arg(port + 2));
    }
    program_.WriteDatabases(routers,
                            {{1, QStringLiteral("Game night"), QStringLiteral("Game"),
                              QStringLiteral("6881-6889|6969-6969"), QStringLiteral("27015"),
                              QStringLiteral("3478-3480")},
                             {2, QStringLiteral("A program with a very long name and many ports"),
                              QStringLiteral("Many"), many.join(QLatin1Char('|')), QString(),
                              QStringLiteral("1-x|<b>")}});
    program_.WriteFile("settings.ini",
                       "[main]\r\nrouter=Harbour HB-600\r\nrouterip=192.168.1.1\r\n"
                       "routerusername=admin\r\nrouterpassword=tea for two\r\n");
    MakeRouterPicture().save(program_.Path("router.jpg"));
  }

  Task<> TakeAll() {
    co_await TakeSplash();
    co_await TakeGuide();
    co_await TakeMain(QStringLiteral("main_empty"));
    program_.WriteFile("list.qyl",
                       "Ftp|192.168.1.10(FrontDesk)|21|21|TCP|File server\r\n"
                       "Game|192.168.1.20()|6881|6889|TCP/UDP|Game night\r\n"
                       "Voice|192.168.1.30(Kitchen)|5060|5061|UDP|Telephone\r\n"
                       "Web|192.168.1.10(FrontDesk)|8080|8080|TCP|Home page\r\n");
    co_await TakeMain(QStringLiteral("main"));
    co_await TakeJob(true, QStringLiteral("job"));
    co_await TakeJob(false, QStringLiteral("job_end"));
    co_await TakeEntries();
    co_await TakeRouterWindows();
    co_await TakeSecondRouter();
    co_await TakePortWindows();
    co_await TakeUpdateWindows();
    co_await TakeFirewallWindows();
    co_await TakeStaticAddress();
  }

 private:
  void Save(QWidget& window, const QString& name) {
    const QString scale = QString::number(qRound(window.devicePixelRatioF()));
    const QString file = QStringLiteral("%1/%2_%3_%4x.png").arg(folder_, name, palette_, scale);
    if (!window.grab().save(file)) {
      std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
      failed_ = true;
    }
  }

  Task<> TakeSplash() {
    SplashScreen splash;
    splash.show();
    co_await Sleep(600ms);
    Save(splash, QStringLiteral("splash"));
  }

  Task<> TakeGuide() {
    ShownContext context(program_, language_);
    QAction step;
    GettingStartedWindow guide({&step, &step, &step, &step, &step, &step, &step}, context.settings,
                               context.translator, nullptr);
    guide.setAttribute(Qt::WA_DeleteOnClose, false);
    const SkinFrame main(TitleButtons::kClose, nullptr);
    guide.ShowBeside(main);
    guide.ShowSecondRouter(true);
    Click(&guide, "router_button");
    co_await Sleep(50ms);
    Save(guide, QStringLiteral("getting_started"));
    HelpDialog help(context.translator, QStringLiteral("first-update"), nullptr);
    help.setAttribute(Qt::WA_DeleteOnClose, false);
    help.show();
    co_await Sleep(50ms);
    Save(help, QStringLiteral("help"));
  }

  Task<> TakeMain(QString name) {
    ShownContext context(program_, language_);
    WindowPrompts prompts(context.translator);
    FakeWindows windows(context, prompts);
    MainFrame window(context, prompts, windows);
    window.Load();
    window.setMinimumSize(1000, 740);  // the screen of these pictures is smaller than a user's
    window.show();
    bool is_ready = false;
    QObject::connect(&window.Main(), &MainWindow::ready, &window, [&] { is_ready = true; });
    co_await Until([&] { return is_ready; }).WokenBy(&window.Main(), &MainWindow::ready);
    co_await Sleep(600ms);
    const QDateTime now(QDate::currentDate(), QTime(14, 5));
    const QList<PortEntry> entries = context.port_list.Entries();
    const EntryState states[] = {EntryState::kOnRouter, EntryState::kOnRouter, EntryState::kMissing,
                                 EntryState::kUnknown};
    for (int row = 0; row < entries.size(); ++row) {
      context.port_list.NoteLooks({{entries[row], {.on_router = states[row], .looked_at = now}}});
    }
    Save(window, name);
    if (name != QLatin1String("main")) {
      co_return;
    }
    for (const char* menu_name :
         {"file_menu", "tools_menu", "advanced_menu", "help_menu", "extras_menu", "list_menu"}) {
      auto* menu = window.findChild<QMenu*>(QLatin1String(menu_name));
      menu->popup(window.mapToGlobal(QPoint(40, 40)));
      co_await Sleep(50ms);
      Save(*menu, QLatin1String(menu_name));
      menu->close();
    }
    AboutDialog* about = new AboutDialog(&window);
    about->open();
    co_await Sleep(50ms);
    Save(*about, QStringLiteral("about"));
    about->close();
    window.findChild<QAbstractButton*>(QStringLiteral("login_help_button"))->click();
    co_await Sleep(50ms);
    for (QWidget* box : window.findChildren<QDialog*>()) {
      if (box->isVisible()) {
        Save(*box, QStringLiteral("message"));
        box->close();
      }
    }
    window.setMinimumSize(480, 360);
    window.ResizeSurface({800, 600});
    co_await Sleep(50ms);
    Save(window, QStringLiteral("main_small"));
  }

  // In debug mode it is held at its first step; else it is over, and the rules are looked up.
  Task<> TakeJob(bool is_held, QString name) {
    ShownContext context(program_, language_);
    context.job_options.debug_mode = is_held;
    context.job_options.throttle = false;
    context.job_options.verify_after_update = !is_held;
    context.session.router_name = QStringLiteral("Harbour HB-600");
    context.session.router_ip = QStringLiteral("192.168.1.1");
    context.session.update_script = {QStringLiteral("nav(\"forward\")"),
                                     QStringLiteral("nav(\"save\")")};
    context.port_list.SetEntries(*LoadPortList(program_.Path("list.qyl")));
    WindowPrompts prompts(context.translator);
    auto* job = new JobWindow(context, prompts, [](PageQuestions& questions, QObject* parent) {
      auto* page = new FakePage(questions, parent, MakePage());
      page->rows = MakeRows();
      return page;
    });
    job->show();
    co_await Sleep(is_held ? 1000ms : 3000ms);
    Save(*job, name);
    if (!is_held) {
      Click(job, "details_button");
      co_await Sleep(50ms);
      Save(*job, name + QStringLiteral("_details"));
      Click(job, "details_button");
      job->resize(job->minimumSizeHint());
      co_await Sleep(50ms);
      Save(*job, name + QStringLiteral("_small"));
    }
    job->close();
    co_await Sleep(10ms);
  }

  // Each state of the entry windows, also with what is too long for them.
  Task<> TakeEntries() {
    program_.adapters.adapters = {{.description = QStringLiteral("enp3s0"),
                                   .index = 2,
                                   .address = QStringLiteral("192.168.1.20"),
                                   .mask = QStringLiteral("255.255.255.0"),
                                   .gateway = QStringLiteral("192.168.1.1")}};
    ShownContext context(program_, language_);
    if (!context.databases.Open(program_.dir.path())) {
      co_return;
    }
    context.port_list.SetEntries(*LoadPortList(program_.Path("list.qyl")));
    SelectRouter(context.session, *context.databases.FindRouter(600));
    WindowPrompts prompts(context.translator);
    EntryRig rig(context, prompts);
    QWidget window;
    co_await TakeNetworkLists(&rig.windows, &window);
    co_await TakeAddNew(&rig.windows, &window);
    context.session.needs_computer_name = QStringLiteral("yes");
    rig.host_names.hangs = true;
    QDialog* edit = rig.windows.Edit(&window, 0, [] {});
    edit->show();
    co_await Sleep(50ms);
    Save(*edit, QStringLiteral("edit_entry"));
    Click(edit, "update_button");
    co_await Sleep(200ms);
    Save(*edit, QStringLiteral("edit_entry_name"));
  }

  Task<> TakeNetworkLists(const EntryWindows* windows, QWidget* parent) {
    QDialog* router = windows->NetworkList(parent, [](const QString&) {});
    router->show();
    auto* own = new AdapterDialog(windows->context.adapters, AddressPurpose::kOwn, parent);
    own->show();
    co_await Sleep(50ms);
    Save(*router, QStringLiteral("adapters"));
    Save(*own, QStringLiteral("own_address"));
  }

  Task<> TakeAddNew(const EntryWindows* windows, QWidget* parent) {
    QDialog* add = windows->AddNew(parent, [] {});
    add->show();
    co_await Sleep(300ms);
    Save(*add, QStringLiteral("add_entry"));
    auto* programs = add->findChild<QComboBox*>(QStringLiteral("program_box"));
    for (const int program : {0, 1}) {
      programs->setCurrentIndex(program);
      Q_EMIT programs->activated(program);
      if (program == 0) {
        Click(add, "add_button");
      }
      co_await Sleep(50ms);
      Save(*add, QStringLiteral("add_entry_program%1").arg(program + 1));
    }
    auto* installed = add->findChild<QComboBox*>(QStringLiteral("installed_box"));
    installed->setCurrentIndex(installed->findText(QStringLiteral("Azureus Vuze")));
    Q_EMIT installed->textActivated(installed->currentText());
    co_await Sleep(50ms);
    Save(*add, QStringLiteral("add_entry_installed"));
    add->findChild<QTabWidget*>()->setCurrentIndex(1);
    co_await Sleep(50ms);
    Save(*add, QStringLiteral("add_entry_custom"));
    Click(add, "add_button");
    co_await Sleep(50ms);
    Save(*add, QStringLiteral("add_entry_problem"));
    add->resize(add->minimumSizeHint());
    add->findChild<QTabWidget*>()->setCurrentIndex(0);
    co_await Sleep(50ms);
    Save(*add, QStringLiteral("add_entry_small"));
  }

  static void Click(QWidget* window, const char* button) {
    window->findChild<QAbstractButton*>(QLatin1String(button))->click();
  }

  Task<> TakeSecondRouter() {
    const ShownContext context(program_, language_);
    const Translator& translator = context.translator;
    EchoesOfTwoRouters echoes;
    SecondRouterDialog dialog(program_.adapters, echoes, translator, nullptr);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    co_await Sleep(50ms);
    Save(dialog, QStringLiteral("second_router_start"));
    Click(&dialog, "check_button");
    co_await Sleep(200ms);
    Save(dialog, QStringLiteral("second_router"));
  }

  Task<> TakePortWindows() {
    ShownContext context(program_, language_);
    context.maker_site.test_site = QStringLiteral("http://127.0.0.1:9");
    context.session.router_ip = QStringLiteral("192.168.1.1");
    context.port_list.SetEntries(*LoadPortList(program_.Path("list.qyl")));
    program_.adapters.address_table = {QStringLiteral("127.0.0.1")};
    WindowPrompts prompts(context.translator);
    const PageHostFactory make_page = [](PageQuestions& questions, QObject* parent) {
      return new FakePage(questions, parent, MakePage());
    };
    auto* checker = new PortCheckerWindow(context, prompts, make_page, nullptr, [] {});
    checker->show();
    co_await Sleep(50ms);
    Save(*checker, QStringLiteral("port_checker_start"));
    Click(checker, "begin_button");
    co_await Sleep(300ms);
    Save(*checker, QStringLiteral("port_checker"));
    checker->close();
    program_.adapters.address_table = {QStringLiteral("192.168.1.10")};
    auto* quick = new QuickPortsDialog(
        context, nullptr,
        [](MappingRequest request) -> Task<std::expected<MappingAnswer, Message>> {
          co_return MappingAnswer{
              .protocol = QStringLiteral("UPnP"),
              .outside_address = QStringLiteral("198.51.100.7"),
              .results = QList<MappingResult>(request.entries.size(), MappingResult::kOpen)};
        });
    quick->show();
    co_await Sleep(50ms);
    Save(*quick, QStringLiteral("quick_ports"));
    quick->close();
  }

  Task<> TakeFirewallWindows() {
    ShownContext context(program_, language_);
    const Translator& translator = context.translator;
    FakeFirewall firewall;
    firewall.view.kind = FirewallKind::kNftables;
    for (const int port : {22, 443, 8080}) {
      firewall.view.rules.append(
          {.name = OwnRuleName({port, port, kTcpNumber}), .first_port = port, .last_port = port});
    }
    firewall.view.rules.append({.name = QStringLiteral("filter input"), .protocol = 47});
    firewall.hangs = true;
    auto* adding = new FirewallChangeDialog(
        firewall, QList<FirewallPorts>{{6881, 6889, kTcpNumber}}, translator, nullptr);
    adding->show();
    co_await Sleep(300ms);
    Save(*adding, QStringLiteral("firewall_add"));
    adding->close();
    firewall.hangs = false;
    auto* added = new FirewallChangeDialog(firewall, QList<FirewallPorts>{{6881, 6889, kTcpNumber}},
                                           translator, nullptr);
    auto* list = new FirewallListDialog(firewall, translator, nullptr);
    added->show();
    list->show();
    co_await Sleep(300ms);
    Save(*added, QStringLiteral("firewall_added"));
    Save(*list, QStringLiteral("firewall_list"));
    added->close();
    list->close();
    firewall.error = FirewallError{FirewallFault::kRefused, FirewallKind::kUfw, {}};
    auto* refused = new FirewallChangeDialog(firewall, std::nullopt, translator, nullptr);
    refused->show();
    co_await Sleep(300ms);
    Save(*refused, QStringLiteral("firewall_refused"));
    refused->close();
    auto* cache = new CacheDialog([]() -> Task<bool> { co_return true; }, translator, nullptr);
    cache->show();
    Click(cache, "clear_button");
    co_await Sleep(50ms);
    Save(*cache, QStringLiteral("clear_cache"));
    cache->close();
    auto* repair = new RepairDialog(DatabaseRepair(context, false), translator, nullptr);
    repair->show();
    Click(repair, "repair_button");
    co_await Sleep(500ms);
    Save(*repair, QStringLiteral("repair_databases"));
    repair->close();
    auto* browser = new RepairDialog(BrowserRepair({}, false), translator, nullptr);
    browser->show();
    co_await Sleep(50ms);
    Save(*browser, QStringLiteral("repair_browser"));
    browser->close();
    co_await Sleep(10ms);
  }

  Task<> TakeStaticAddress() {
    ShownContext context(program_, language_);
    WindowPrompts prompts(context.translator);
    FakeAddressSetup setup;
    setup.adapters = {{.description = QStringLiteral("Wired connection 1 (enp3s0)"), .index = 2}};
    FakeNeighbours neighbours;
    neighbours.answer = {.kind = NeighbourAnswer::Kind::kAnswers,
                         .hardware_address = QByteArray("\xb8\x27\xeb\x10\x20\x30", 6)};
    auto* dialog = new StaticAddressDialog(context, prompts, setup, neighbours, nullptr);
    dialog->show();
    co_await Sleep(50ms);
    Save(*dialog, QStringLiteral("static_address"));
    Click(dialog, "enable_button");
    co_await Sleep(50ms);
    Save(*dialog, QStringLiteral("static_address_taken"));
    neighbours.answer = {};
    setup.hangs = true;
    Click(dialog, "disable_button");
    co_await Sleep(50ms);
    Save(*dialog, QStringLiteral("static_address_busy"));
    dialog->resize(dialog->minimumSizeHint());
    co_await Sleep(50ms);
    Save(*dialog, QStringLiteral("static_address_small"));
    delete dialog;
    setup.hangs = false;
    setup.list_error = SetupResult{.is_service_missing = true};
    auto* missing = new StaticAddressDialog(context, prompts, setup, neighbours, nullptr);
    missing->show();
    co_await Sleep(50ms);
    Save(*missing, QStringLiteral("static_address_missing"));
    delete missing;
  }

  // The list of routers, the page of ports, and scripts with a few faults.
  Task<> TakeRouterWindows() {
    ShownContext context(program_, language_);
    if (!context.databases.Open(program_.dir.path())) {
      failed_ = true;
      co_return;
    }
    context.session.router_name = QStringLiteral("Harbour HB-600");
    context.session.router_ip = QStringLiteral("192.168.1.1");
    context.session.router_id = 600;
    context.session.view_script = {QStringLiteral("nav(\"forward\")")};
    context.session.update_script = {
        QStringLiteral("--- add one rule ---"),     QStringLiteral("nav(\"forward.htm\")"),
        QStringLiteral("set_nmae(\"rule_name,\")"), QStringLiteral("set_start_port(\"start,x\")"),
        QStringLiteral("click_button(\"Save\")"),   QStringLiteral("set_stop_port(\"\")")};
    WindowPrompts prompts(context.translator);
    auto* list = new RouterListDialog(context, prompts, nullptr, [](int) {});
    const PageHostFactory make_page = [](PageQuestions& questions, QObject* parent) {
      return new FakePage(questions, parent, MakePage());
    };
    auto* bench = new ScriptDialog(context, prompts, make_page, nullptr, [] {});
    // Before the window of the page, whose run keeps others from beginning.
    bench->findChild<QAbstractButton*>(QStringLiteral("bench_button"))->click();
    auto* page = new PageViewWindow(
        context, prompts,
        [](PageQuestions& questions, QObject* parent) {
          return new FakePage(questions, parent, MakePage());
        },
        nullptr);
    auto* scripts = new ScriptDialog(context, prompts, make_page, nullptr, [] {});
    auto* own = new NewRouterDialog(context, prompts, context.databases.RouterNames(0, 100),
                                    nullptr, [](int, const QString&) {});
    QDialog* const windows[] = {list, page, scripts, bench, own};
    const char* const names[] = {"router_list", "page_view", "scripts", "script_bench",
                                 "new_router"};
    page->resize(1120, 780);
    for (int i = 0; i < 5; ++i) {
      windows[i]->show();
      windows[i]->activateWindow();
      co_await Sleep(1500ms);
      Save(*windows[i], QLatin1String(names[i]));
      if (windows[i] == scripts) {
        auto* editor = scripts->findChild<ScriptEditor*>(QStringLiteral("update_script_editor"));
        editor->moveCursor(QTextCursor::End);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::ControlModifier);
        editor->insertPlainText(QStringLiteral("set_st"));
        QCoreApplication::sendEvent(editor, &key);
        co_await Sleep(50ms);
        Save(*editor->findChild<QCompleter*>()->popup(), QStringLiteral("completion"));
        editor->findChild<QCompleter*>()->popup()->hide();
      }
      windows[i]->resize(windows[i]->minimumSizeHint());
      co_await Sleep(50ms);
      Save(*windows[i], QLatin1String(names[i]) + QStringLiteral("_small"));
    }
    for (QDialog* window : windows) {
      delete window;
    }
  }

  // Each before it does anything, and when its server does not answer.
  Task<> TakeUpdateWindows() {
    ShownContext context(program_, language_);
    WindowPrompts prompts(context.translator);
    auto* update =
        new ProgramUpdateWindow(context, prompts, QStringLiteral("3.0.0"), nullptr, [] {});
    update->show();
    co_await Sleep(50ms);
    Save(*update, QStringLiteral("program_update_no_site"));
    delete update;
    context.settings.SetValue(setting::kUpdateSite, QStringLiteral("http://127.0.0.1:9"));
    update = new ProgramUpdateWindow(context, prompts, QStringLiteral("3.0.0"), nullptr, [] {});
    auto* databases = new DatabaseUpdateDialog(context, prompts, nullptr, [] {});
    update->show();
    databases->show();
    Click(update, "check_button");
    co_await Sleep(600ms);
    Save(*update, QStringLiteral("program_update"));
    Save(*databases, QStringLiteral("database_update"));
    update->resize(update->minimumSizeHint());
    co_await Sleep(50ms);
    Save(*update, QStringLiteral("program_update_small"));
    delete update;
    delete databases;
    context.settings.SetValue(setting::kUpdateSite, {});
  }

  QString folder_;
  QString palette_;
  QString language_;
  ProgramFolder program_;
  bool failed_ = false;
};

int Run(QApplication& application) {
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3 && arguments.size() != 4) {
    std::fprintf(stderr, "usage: quayline_screenshots FOLDER light|dark [LANGUAGE]\n");
    return 2;
  }
  if (arguments.at(2) == QLatin1String("dark")) {
    QApplication::setPalette(DarkPalette());
  }
  const Theme theme(application);
  Photographer photographer(arguments.at(1), arguments.at(2),
                            arguments.value(3, QStringLiteral("English")));
  Flow flow;
  QObject::connect(&flow, &Flow::ended, qApp, &QCoreApplication::quit);
  QTimer::singleShot(0, &flow, [&] { flow.Start(photographer.TakeAll()); });
  return QCoreApplication::exec();
}

}  // namespace
}  // namespace quayline::testing

int main(int argc, char** argv) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QApplication application(argc, argv);
  return quayline::testing::Run(application);
}
