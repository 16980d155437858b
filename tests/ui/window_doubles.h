// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPointer>

#include "async/wait.h"
#include "core/app_context.h"
#include "core/files.h"
#include "core/test_databases.h"
#include "platform/address_setup.h"
#include "platform/fake_adapters.h"
#include "platform/host_names.h"
#include "platform/linux/wine_settings.h"
#include "platform/neighbours.h"
#include "script/page_host.h"
#include "ui/entries/entry_windows.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"

namespace quayline::testing {

using Qt::StringLiterals::operator""_s;

// Answers boxes in advance and notes what was shown. A box without an answer is cancelled.
// `on_page_box` delays the answer as a user would.
class FakePrompts final : public Prompts {
 public:
  using Prompts::Tell;

  std::vector<std::string> shown;  // "Tell: text", "Ask: title: text", "Save: title", ...
  QList<bool> answers;
  QList<qsizetype> choices;
  QList<QString> files;
  std::optional<LoginAnswer> login;
  PageBoxAnswer page_answer;
  std::function<void()> on_page_box;
  int boxes_closed = 0;
  bool leaves_open = false;  // what is asked for an asker, until Answer()

  // The question that was left open.
  bool IsOpen() const { return asker_ != nullptr; }
  void Answer(bool yes) { std::exchange(open_, {})(yes); }

  void Tell(QWidget*, const QString& text, std::function<void()> closed) override {
    Note("Tell", {text});
    closed();
  }
  void TellTitled(QWidget*, const QString& title, const QString& text) override {
    Note("Tell", {title, text});
  }
  void Notify(QWidget*, const QString& text) override { Note("Notify", {text}); }
  void Ask(QWidget*, const QString& title, const QString& text,
           std::function<void(bool yes)> answered) override {
    Note("Ask", {title, text});
    answered(!answers.isEmpty() && answers.takeFirst());
  }
  void AskCarefully(QWidget*, const QString& title, const QString& text,
                    std::function<void(bool yes)> answered) override {
    Note("Careful", {title, text});
    answered(!answers.isEmpty() && answers.takeFirst());
  }
  void AskFor(const QObject* asker, QWidget* window, const QString& title, const QString& text,
              std::function<void(bool yes)> answered) override {
    if (leaves_open) {
      Note("Careful", {title, text});
      asker_ = asker;
      open_ = std::move(answered);
    } else {
      AskCarefully(window, title, text, std::move(answered));
    }
  }
  void AskChoice(QWidget*, const QString& title, const QString& text, const QStringList& offered,
                 std::function<void(qsizetype chosen)> answered) override {
    Note("Choose", {title, text});
    answered(choices.isEmpty() ? offered.size() - 1 : choices.takeFirst());
  }
  void AskLogin(QWidget*, const QString& address,
                std::function<void(std::optional<LoginAnswer>)> answered) override {
    Note("Login", {address});
    answered(login);
  }
  PageBoxAnswer AnswerPage(QWidget*, const PageBox& question) override {
    Note("Page", {question.text});
    if (on_page_box) {
      on_page_box();
    }
    return page_answer;
  }
  void CloseBoxes(QWidget*) override { ++boxes_closed; }
  void AskSaveFile(QWidget*, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override {
    Note("Save", {question.title});
    Choose(chosen);
  }
  void AskOpenFile(QWidget*, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override {
    Note("Open", {question.title});
    Choose(chosen);
  }
  void AskFolder(QWidget*, const QString& title, const QString&,
                 std::function<void(const QString& folder)> chosen) override {
    Note("Folder", {title});
    Choose(chosen);
  }

 private:
  QPointer<const QObject> asker_;
  std::function<void(bool yes)> open_;

  void Note(const char* box, const QStringList& texts) {
    shown.push_back(std::string(box) + ": " + texts.join(QLatin1String(": ")).toStdString());
  }
  void Choose(const std::function<void(const QString& file)>& chosen) {
    if (!files.isEmpty()) {
      chosen(files.takeFirst());
    }
  }
};

// An adapter with a default route.
inline Adapter UsedAdapter() {
  return {.description = u"eth0"_s,
          .address = u"10.0.0.7"_s,
          .mask = u"255.0.0.0"_s,
          .gateway = u"10.0.0.1"_s};
}

class FakeDesktop final : public Desktop {
 public:
  QList<QUrl> opened;
  bool has_browser = true;
  QStringList notifications;
  bool has_network_settings = true;
  int network_settings_opened = 0;
  QStringList files;  // that were opened
  QString update_command;

  bool OpenInBrowser(const QUrl& page) override {
    opened.append(page);
    return has_browser;
  }
  bool OpenFile(const QString& file) override {
    files.append(file);
    return true;
  }
  QString UpdateCommand() const override { return update_command; }
  void ShowNotification(const QString& title, const QString& text) override {
    notifications.append(title + u": "_s + text);
  }
  bool HasNetworkSettings() const override { return has_network_settings; }
  bool OpenNetworkSettings() override {
    ++network_settings_opened;
    return has_network_settings;
  }
};

// An adapter service that notes what it is asked for.
class FakeAddressSetup final : public AddressSetup {
 public:
  QList<SetupAdapter> adapters;
  std::optional<SetupResult> list_error;
  AdapterAddresses current{.address = u"192.168.1.20"_s,
                           .mask = u"255.255.255.0"_s,
                           .gateway = u"192.168.1.1"_s,
                           .first_server = u"9.9.9.9"_s,
                           .is_automatic = true};
  SetupResult result;
  bool hangs = false;
  int changed = 0;  // the index of the adapter
  FixedAddress wanted;

  Task<std::expected<QList<SetupAdapter>, SetupResult>> List() override {
    if (list_error) {
      co_return std::unexpected(*list_error);
    }
    co_return adapters;
  }
  Task<std::expected<AdapterAddresses, SetupResult>> Read(int) override { co_return current; }
  Task<SetupResult> SetFixed(int adapter, FixedAddress address) override {
    wanted = address;
    SetupResult made = co_await SetAutomatic(adapter);
    co_return made;
  }
  Task<SetupResult> SetAutomatic(int adapter) override {
    changed = adapter;
    if (hangs) {
      co_await Until([] { return false; });
    }
    co_return result;
  }
};

class FakeNeighbours final : public Neighbours {
 public:
  NeighbourAnswer answer{.kind = NeighbourAnswer::Kind::kSilence};

  Task<NeighbourAnswer> Ask(int, quint32, std::chrono::milliseconds) override { co_return answer; }
};

// A browser whose pages are all the same: every question is answered with the same words, every
// navigation is over at once, or never when `hangs` is set.
class FakePage final : public PageHost {
 public:
  FakePage(PageQuestions& answerer, QObject* parent, QWidget* view)
      : PageHost(parent), questions(answerer), view_(view) {}
  ~FakePage() override { delete view_.data(); }

  PageQuestions& questions;
  bool hangs = false;
  QJsonObject rows;                      // what the page shows
  QJsonObject element;                   // what is under the mouse pointer
  QJsonArray documents;                  // what the page is made of
  std::map<QString, QJsonObject> parts;  // the files that it uses, by their addresses
  QStringList opened;                    // addresses
  // Called before a question is answered.
  std::function<void(FakePage& page, const PageCall& call)> asked;

  void Navigate2(const QString& url, const QString&) override {
    opened.append(url);
    ++navigation_.starts;
    navigation_.busy = true;
    navigation_.after_action = hangs;  // what hangs is a save
    Q_EMIT navigationChanged();
    Q_EMIT beforeNavigate();
    if (!hangs) {
      navigation_.busy = false;
      Q_EMIT navigationChanged();
      Q_EMIT documentComplete();
    }
  }
  // Ends the calls that hang.
  void Arrive() {
    navigation_.busy = false;
    Q_EMIT navigationChanged();
  }
  // The user saves by hand; Arrive() is the router's answer.
  void Save() {
    ++navigation_.starts;
    navigation_.busy = true;
    Q_EMIT navigationChanged();
  }
  void Refresh2() override { Navigate2({}, {}); }
  void StopNavigation() override {}
  void HandOver() override { navigation_.after_action = true; }
  void SetLogin(const PageLogin&) override {}
  void Call(const PageCall& call, std::function<void(PageAnswer)> answer) override {
    if (asked) {
      asked(*this, call);
    }
    const std::map<QString, QJsonValue> answers{{u"ReadRows"_s, rows},
                                                {u"DescribeElementAt"_s, element},
                                                {u"DescribePage"_s, documents},
                                                {u"FetchPart"_s, Part(call)},
                                                {u"ClickInRow"_s, u"(Successful)"_s}};
    const auto found = answers.find(call.operation);
    answer({.answered = true,
            .value = found == answers.end() ? QJsonValue(u"page"_s) : found->second});
  }
  void RunInPage(const PageScript&, std::function<void(const QString&)> done) override { done({}); }
  void SendKeys(const QString&) override {}
  void ClearCache(std::function<void(bool)> done) override { done(true); }
  NavigationState Navigation() const override { return navigation_; }
  bool ShowsUnchanged(const QString&) const override { return false; }
  void ReportIdle(PendingWork, std::function<void(IdleReport)> report) override { report({}); }
  QWidget* Widget() override { return view_; }

 private:
  QJsonValue Part(const PageCall& call) const {
    const auto found = parts.find(call.arguments.at(0).toString());
    return found == parts.end() ? QJsonValue() : QJsonValue(found->second);
  }

  QPointer<QWidget> view_;
  NavigationState navigation_;
};

inline RouterRecord RouterRow(int id, const QString& name, const QString& user) {
  return {.id = id,
          .routername = name,
          .routerusername = user,
          .routerpassword = u"secret"_s,
          .routersupportsboth = u"yes"_s,
          .routerneedscomputername = u"no"_s,
          .routermaxentries = u"16"_s,
          .routermaxrange = u"100"_s,
          .routerminport = u"1"_s,
          .routermaxport = u"65535"_s,
          .routerpic = u"a\\b.png"_s,
          .routercommands = u"nav(\"one\")\r\n\r\nnav(\"two\")"_s,
          .routerportpage = u"nav(\"list\")"_s};
}

// A program folder, and the system around a window in it.
struct ProgramFolder {
  ProgramFolder() {
    adapters.local_addresses = {{QString(), u"192.168.1.20"_s}};
    adapters.address_table = {u"127.0.0.1"_s, u"192.168.1.20"_s, u"10.8.0.2"_s};
  }

  QString Path(const char* name) const { return dir.filePath(QLatin1String(name)); }

  void WriteDatabases(const QList<RouterRecord>& routers, const QList<AppPortRecord>& programs = {},
                      const QList<CustomPortRecord>& customs = {}) const {
    if (!MakeTestDatabases(dir.path(), routers, programs, customs)) {
      qFatal("no databases can be written");
    }
  }
  void WriteFile(const char* name, const QByteArray& bytes) const {
    if (!WriteBytes(Path(name), bytes)) {
      qFatal("%s cannot be written", name);
    }
  }
  QByteArray ReadFile(const char* name) const { return ReadBytes(Path(name)); }

  QTemporaryDir dir;
  FakeAdapters adapters;
  FakeDesktop desktop;
};

// A network in which every computer has the same name, or in which no answer comes.
class FakeHostNames final : public HostNames {
 public:
  QString name;
  bool hangs = false;
  QStringList asked;

  Task<QString> OfAddress(QString address) override {
    asked.append(address);
    if (hangs) {
      co_await Until([] { return false; });
    }
    co_return name;
  }
};

// The entry windows on a program folder, with a home folder of their own for other programs.
struct EntryRig {
  EntryRig(AppContext& app, Prompts& boxes) : windows{app, boxes, host_names, programs} {}

  QTemporaryDir home;
  FakeHostNames host_names;
  WineSettings programs{home.filePath(u"wine"_s), home.path(), home.filePath(u".config"_s),
                        home.filePath(u"root"_s)};
  EntryWindows windows;
};

// What the main window opens: the entry windows, and empty ones in place of the others.
class FakeWindows final : public WindowFactory {
 public:
  FakeWindows(AppContext& app, Prompts& boxes) : entries_(app, boxes) {}

  QList<QPointer<QWidget>> jobs;
  const QWidget* former_job = nullptr;  // of the last one
  bool has_second_router = false;
  int checks = 0;            // how many of them only look
  QPointer<QDialog> dialog;  // the last one that was opened
  QList<ComputerWindow> of_computer;
  std::function<void(int router_id)> choose_router;
  std::function<void()> scripts_written;
  std::function<void()> databases_updated;
  int update_checks = 0;  // silent ones

  QWidget* Job(QWidget* former) override {
    former_job = former;
    jobs.append(new QWidget);
    jobs.last()->setAttribute(Qt::WA_DeleteOnClose);
    return jobs.last();
  }
  QWidget* RouterCheck() override {
    ++checks;
    return Job(nullptr);
  }
  QDialog* AddEntry(QWidget* parent, std::function<void()> changed) override {
    return entries_.windows.AddNew(parent, changed);
  }
  QDialog* EditEntry(QWidget* parent, int row, std::function<void()> changed) override {
    return entries_.windows.Edit(parent, row, changed);
  }
  QDialog* Adapters(QWidget* parent, std::function<void(const QString&)> chosen) override {
    return entries_.windows.NetworkList(parent, chosen);
  }
  QDialog* PageView(QWidget* parent) override { return MakeDialog(parent); }
  QDialog* SecondRouter(QWidget* parent) override { return MakeDialog(parent); }
  QDialog* RouterList(QWidget* parent, std::function<void(int router_id)> chosen) override {
    choose_router = std::move(chosen);
    return MakeDialog(parent);
  }
  QDialog* PortChecker(QWidget* parent) override { return MakeDialog(parent); }
  QDialog* QuickPorts(QWidget* parent) override { return MakeDialog(parent); }
  QDialog* OfComputer(QWidget* parent, ComputerWindow window) override {
    of_computer.append(window);
    return MakeDialog(parent);
  }
  QDialog* StaticAddress(QWidget* parent) override { return MakeDialog(parent); }
  QDialog* ProgramUpdate(QWidget* parent, std::function<void()>) override {
    return MakeDialog(parent);
  }
  void CheckForUpdate(QWidget*, std::function<void()>) override { ++update_checks; }
  QDialog* DatabaseUpdate(QWidget* parent, std::function<void()> updated) override {
    databases_updated = std::move(updated);
    return MakeDialog(parent);
  }
  bool HasSecondRouter() const override { return has_second_router; }
  QDialog* Scripts(QWidget* parent, std::function<void()> written) override {
    scripts_written = std::move(written);
    return MakeDialog(parent);
  }

 private:
  QDialog* MakeDialog(QWidget* parent) {
    dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
  }

  EntryRig entries_;
};

}  // namespace quayline::testing
