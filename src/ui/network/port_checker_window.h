// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

#include "async/flow.h"
#include "core/app_context.h"
#include "net/port_check.h"
#include "script/page_host.h"
#include "ui/toolkit/prompts.h"

class QPlainTextEdit;
class QStandardItemModel;

namespace Ui {
class PortCheckerWindow;
}

namespace quayline {

class HostedTestPage;

// Tests from the outside whether ports reach this computer. Begins with the ports of the list; the
// user adds and removes others. Closing the window ends a check and closes its port.
class PortCheckerWindow final : public QDialog {
  Q_OBJECT

 public:
  // `search_router` opens the search for a second router. What is referred to outlives the window.
  PortCheckerWindow(AppContext& context, Prompts& prompts, const PageHostFactory& make_host,
                    QWidget* parent, std::function<void()> search_router);
  ~PortCheckerWindow() override;

  // As if "Begin" were pressed.
  void Begin();

 protected:
  void done(int result) override;

 private:
  enum Column { kPort, kProtocol, kStatus, kOpen, kColumns };

  void SetUpControls();
  void ConnectControls();
  void ConnectCheck();
  // Takes the site that the user typed, if it is one.
  void TakeSite();
  void AddPort();
  void RemovePort();
  void ShowTests();
  void ShowTest(int row);
  void OnChanged(int row);
  void SetWorking(bool working);
  // Puts the result of a test into the port list.
  void NoteResult(const PortTest& test);
  ReachVerdict VerdictOf(const PortEntry& entry, const PortTest& test) const;
  // Offers what the results ask for.
  void Advise();
  // Notes what the firewall of this computer lets in, where it shows that without a password, and
  // advises.
  Task<> LookAtFirewall();
  // Adds a line to a log and shows its beginning.
  static void AddLine(QPlainTextEdit& log, const QString& line);
  QString StatusOf(const PortTest& test) const;
  QString ResultOf(const PortTest& test) const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::function<void()> search_router_;
  std::unique_ptr<Ui::PortCheckerWindow> ui_;
  QStandardItemModel* rows_;
  HostedTestPage* page_;
  std::unique_ptr<PortCheck> check_;
  QString tested_address_;  // of this computer
  Flow firewall_look_;
  QString last_status_;
};

}  // namespace quayline
