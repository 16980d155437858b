// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

#include "core/app_context.h"
#include "core/port_totals.h"
#include "core/update_command.h"
#include "ui/main/list_columns.h"
#include "ui/main/list_commands.h"
#include "ui/main/router_list_model.h"
#include "ui/main/router_selection.h"
#include "ui/main/start_up.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class MainWindow;
}

namespace quayline {

// Makes the windows that the main window opens.
struct WindowFactory {
  // A job window on the current list and router, which starts by itself when it is shown.
  std::function<QWidget*()> job_status;
  // Adds rows to the port list; `changed` is called after each addition.
  std::function<QDialog*(QWidget* parent, std::function<void()> changed)> add_new;
  // Edits a row of the port list; `changed` is called after it has changed.
  std::function<QDialog*(QWidget* parent, int row, std::function<void()> changed)> edit;
  // The network adapters; `chosen` gets the gateway of the one that the user chooses.
  std::function<QDialog*(QWidget* parent, std::function<void(const QString&)> chosen)> network_list;
  // The router's page of ports, reached by the router's view script.
  std::function<QDialog*(QWidget* parent)> view_page;
  // The list of routers; `chosen` gets the key of the one that the user chooses.
  std::function<QDialog*(QWidget* parent, std::function<void(int router_id)> chosen)> router_list;
  // The selected router's scripts; `written` is called when they may have changed.
  std::function<QDialog*(QWidget* parent, std::function<void()> written)> view_scripts;
};

// The main window's content, held by MainFrame: router, login, port list and the one button. It
// shows the session and the list, stores each change of a field, and leaves everything else to its
// logic classes.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(AppContext& context, Prompts& prompts, WindowFactory windows, QWidget* parent);
  ~MainWindow() override;

  // Does the first half of the start and arms the timers. The error has to be shown by the caller,
  // who ends the program.
  std::expected<void, QString> Load();
  // Ends what the window runs, its timers, and the job window. Called once, at the end.
  void Unload();

  // As pressing "Update Router". While a job runs, the user is asked first.
  void UpdateRouter();
  // Replaces the list by that of a file, as if it had been chosen in the dialog. False when it
  // cannot be read, which is shown to the user.
  bool OpenList(const QString& file) { return list_.OpenFile(file); }
  // As OpenList(), but asks first where the user has a list that it would replace.
  void OfferList(const QString& file) { list_.OfferFile(file); }
  const PortTotals& Totals() const { return totals_; }

 Q_SIGNALS:
  // The slow half of the start has ended: everything is filled in.
  void ready();
  void exitRequested();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void DressUp();
  void ConnectRouter();
  void ConnectLogin();
  void ConnectList();
  void ConnectRemoval();
  void ConnectEntryWindows();
  void SetListKeys();
  void SetListEnabled(bool enabled);
  void ConnectAdvancedMenu();
  void ConnectRouterWindows();
  void ConnectWebPages();
  void ConnectStartUp();
  void SetTimers();
  void SetInputsEnabled(bool enabled);

  void SelectRouterRow(int row);
  void ChooseRouter(int id);
  void SettleRouter();
  void ReloadRouter();
  void ViewPorts();
  void ShowStoredFields(const StoredFields& fields);
  void ShowPicture(RouterPicture state, const QImage& picture);
  void ShowMaxEntries();
  void ShowTotals();
  void ShowLocalIp();
  void ShowListMenu(const QPoint& position);
  void OnRouterIpChanged(const QString& typed);
  void OpenPage(const QUrl& page);
  void KeepRowSelected();
  QList<int> SelectedRows() const;
  void AddEntries();
  void EditEntry();
  void ShowRefusal(const UpdateVerdict& verdict);
  // Checks the list and opens the job window. A former one is closed first.
  void StartUpdate();
  void ShowJob();
  void Tell(std::initializer_list<Message> texts);
  void Store(const char* key, const QString& value);
  void NoteStored(bool is_stored);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  WindowFactory windows_;
  std::unique_ptr<Ui::MainWindow> ui_;
  RouterListModel routers_;
  RouterSelection selection_;
  ListCommands list_;
  std::unique_ptr<ListColumns> columns_;
  StartUp start_up_;
  PortTotals totals_;
  QTimer start_timer_;  // the slow half of the start
  QTimer totals_timer_;
  QTimer local_ip_timer_;
  QTimer retry_timer_;  // settings that could not be stored
  QPointer<QWidget> job_window_;
};

}  // namespace quayline
