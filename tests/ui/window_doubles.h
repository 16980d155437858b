// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QTemporaryDir>

#include "core/app_context.h"
#include "core/table_data.h"
#include "script/page_host.h"
#include "ui/toolkit/prompts.h"

namespace quayline::testing {

// Answers boxes in advance and notes what was shown. A box without an answer is cancelled.
class FakePrompts final : public Prompts {
 public:
  using Prompts::Tell;

  QStringList shown;  // "Tell: text", "Ask: title: text", "Save: title: filter", ...
  QList<bool> answers;
  QList<QString> files;
  std::optional<LoginAnswer> login;

  void Tell(QWidget*, const QString& text, std::function<void()> closed) override {
    shown.append(QStringLiteral("Tell: ") + text);
    closed();
  }
  void TellTitled(QWidget*, const QString& title, const QString& text) override {
    shown.append(QStringLiteral("Tell: ") + title + QStringLiteral(": ") + text);
  }
  void Notify(QWidget*, const QString& text) override {
    shown.append(QStringLiteral("Notify: ") + text);
  }
  void Ask(QWidget*, const QString& title, const QString& text,
           std::function<void(bool yes)> answered) override {
    shown.append(QStringLiteral("Ask: ") + title + QStringLiteral(": ") + text);
    answered(!answers.isEmpty() && answers.takeFirst());
  }
  void AskCarefully(QWidget* window, const QString& title, const QString& text,
                    std::function<void(bool yes)> answered) override {
    Ask(window, title, text, std::move(answered));
  }
  void AskLogin(QWidget*, const QString& address,
                std::function<void(std::optional<LoginAnswer>)> answered) override {
    shown.append(QStringLiteral("Login: ") + address);
    answered(login);
  }
  void AskSaveFile(QWidget*, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override {
    shown.append(QStringLiteral("Save: ") + question.title);
    Choose(chosen);
  }
  void AskOpenFile(QWidget*, const FileQuestion& question,
                   std::function<void(const QString& file)> chosen) override {
    shown.append(QStringLiteral("Open: ") + question.title);
    Choose(chosen);
  }

 private:
  void Choose(const std::function<void(const QString& file)>& chosen) {
    if (!files.isEmpty()) {
      chosen(files.takeFirst());
    }
  }
};

class FakeAdapters final : public Adapters {
 public:
  QList<Adapter> adapters;
  QString local_address = QStringLiteral("192.168.1.20");
  QStringList address_table = {QStringLiteral("127.0.0.1"), QStringLiteral("192.168.1.20"),
                               QStringLiteral("10.8.0.2")};

  QList<Adapter> List() const override { return adapters; }
  QString LocalAddress(const QString&) const override { return local_address; }
  QStringList AddressTable() const override { return address_table; }
};

class FakeDesktop final : public Desktop {
 public:
  QList<QUrl> opened;
  bool has_browser = true;

  bool OpenInBrowser(const QUrl& page) override {
    opened.append(page);
    return has_browser;
  }
};

// A browser whose pages are all the same: every question is answered with the same words, every
// navigation is over at once, or never when `hangs` is set.
class FakePage final : public PageHost {
 public:
  FakePage(QObject* parent, QWidget* view) : PageHost(parent), view_(view) {}
  ~FakePage() override { delete view_.data(); }

  bool hangs = false;

  void Navigate2(const QString&, const QString&) override {
    ++navigation_.starts;
    navigation_.busy = true;
    Q_EMIT navigationChanged();
    Q_EMIT beforeNavigate();
    if (!hangs) {
      navigation_.busy = false;
      Q_EMIT navigationChanged();
      Q_EMIT documentComplete();
    }
  }
  // What hangs comes to its end.
  void Arrive() {
    navigation_.busy = false;
    Q_EMIT navigationChanged();
  }
  void Refresh2() override { Navigate2({}, {}); }
  void StopNavigation() override {}
  void SetLogin(const PageLogin&) override {}
  void Call(const PageCall&, std::function<void(PageAnswer)> answer) override {
    answer({.answered = true, .value = QStringLiteral("page")});
  }
  void RunInPage(const QString&, std::function<void()> done) override { done(); }
  void SendKeys(const QString&) override {}
  void ClearCache(std::function<void(bool)> done) override { done(true); }
  NavigationState Navigation() const override { return navigation_; }
  void ProveQuiet(std::function<void()> quiet) override { quiet(); }
  QWidget* Widget() override { return view_; }

 private:
  QPointer<QWidget> view_;
  NavigationState navigation_;
};

inline QStringList RouterRow(int id, const QString& name, const QString& user) {
  return {QString::number(id),
          name,
          user,
          QStringLiteral("secret"),
          QStringLiteral("yes"),
          QStringLiteral("no"),
          QStringLiteral("16"),
          QStringLiteral("100"),
          QStringLiteral("1"),
          QStringLiteral("65535"),
          QStringLiteral("a\\b.png"),
          QStringLiteral("nav(\"one\")\r\n\r\nnav(\"two\")"),
          QStringLiteral("nav(\"list\")")};
}

// A program folder with databases, and what stands around a window in it.
struct ProgramFolder {
  QTemporaryDir dir;
  FakeAdapters adapters;
  FakeDesktop desktop;

  QString Path(const char* name) const { return dir.filePath(QLatin1String(name)); }

  void WriteDatabases(const QList<QStringList>& routers, const QList<QStringList>& programs = {},
                      const QList<QStringList>& customs = {}) {
    const auto columns = [](const char* names) { return QString::fromLatin1(names).split(u' '); };
    const auto write = [this](const char* file, const char* table, const QStringList& fields,
                              const QList<QStringList>& rows) {
      QFile::remove(Path(file));
      return WriteTables({{.name = QLatin1String(table), .columns = fields, .rows = rows}},
                         Path(file))
          .has_value();
    };
    const bool written =
        write("routers.mdb", "routers",
              columns("ID routername routerusername routerpassword routersupportsboth "
                      "routerneedscomputername routermaxentries routermaxrange routerminport "
                      "routermaxport routerpic routercommands routerportpage"),
              routers) &&
        write("ports.mdb", "ports",
              columns("ID appname nameforrouter tcpportsonly udpportsonly tcpudpports"),
              programs) &&
        write("custom.mdb", "custom", columns("ID appname portype startport endport"), customs);
    Q_ASSERT(written);
    Q_UNUSED(written);
  }

  void WriteFile(const char* name, const QByteArray& bytes) const {
    QFile file(Path(name));
    if (file.open(QIODevice::WriteOnly)) {
      file.write(bytes);
    }
  }
  QByteArray ReadFile(const char* name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
};

}  // namespace quayline::testing
