// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QDialog;
class QString;
class QWidget;

namespace quayline {

// Windows about this computer rather than the router.
enum class ComputerWindow {
  kAddExceptions,
  kRemoveExceptions,
  kShowExceptions,
  kClearCache,
  kRepairBrowser,
  kRepairDatabases
};

// Makes the windows that the main window opens: they are of folders that it does not know. Each
// dialog is owned by `parent`, and deletes itself when it is closed.
class WindowFactory {
 public:
  virtual ~WindowFactory() = default;

  // A job window on the current list and router, which starts by itself when it is shown. The rules
  // that jobs of `former`, the job window before, have added can be taken back in the new one if
  // they are on the same router; null: there was no window.
  virtual QWidget* Job(QWidget* former) = 0;
  // As Job(), for a look at the router that changes nothing there.
  virtual QWidget* RouterCheck() = 0;
  // Adds rows to the port list; `changed` is called after each addition.
  virtual QDialog* AddEntry(QWidget* parent, std::function<void()> changed) = 0;
  // Edits a row of the port list; `changed` is called after its content has changed.
  virtual QDialog* EditEntry(QWidget* parent, int row, std::function<void()> changed) = 0;
  // The network adapters; `chosen` gets the gateway of the one that the user takes.
  virtual QDialog* Adapters(QWidget* parent, std::function<void(const QString&)> chosen) = 0;
  // The router's page of ports, reached by the router's view script.
  virtual QDialog* PageView(QWidget* parent) = 0;
  // The search for a second router.
  virtual QDialog* SecondRouter(QWidget* parent) = 0;
  // The list of routers; `chosen` gets the key of the one that the user takes.
  virtual QDialog* RouterList(QWidget* parent, std::function<void(int router_id)> chosen) = 0;
  // The selected router's scripts; `written` is called when they may have changed.
  virtual QDialog* Scripts(QWidget* parent, std::function<void()> written) = 0;
  // Tests the ports of the list from the outside.
  virtual QDialog* PortChecker(QWidget* parent) = 0;
  // Gives this computer a fixed address.
  virtual QDialog* StaticAddress(QWidget* parent) = 0;
  // Whether a search in the background has found a second router.
  virtual bool HasSecondRouter() const = 0;
  // Opens the ports of the list by UPnP.
  virtual QDialog* QuickPorts(QWidget* parent) = 0;
  // One of the windows about this computer.
  virtual QDialog* OfComputer(QWidget* parent, ComputerWindow window) = 0;
  // Looks for a new version of the program; `exit` ends the program, once an installer was started.
  virtual QDialog* ProgramUpdate(QWidget* parent, std::function<void()> exit) = 0;
  // The same without a window, until the user wants a new version that is there.
  virtual void CheckForUpdate(QWidget* parent, std::function<void()> exit) = 0;
  // Fetches new databases; `updated` is called when they are in place.
  virtual QDialog* DatabaseUpdate(QWidget* parent, std::function<void()> updated) = 0;
};

}  // namespace quayline
