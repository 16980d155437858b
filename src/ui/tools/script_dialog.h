// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

#include "core/app_context.h"
#include "script/page_host.h"
#include "ui/toolkit/prompts.h"
#include "ui/tools/script_editor.h"

class QLabel;
class QPushButton;

namespace Ui {
class ScriptDialog;
}

namespace quayline {

class ScriptBench;

// Shows both scripts of the selected router and writes them back to the database, each by its own
// button. `written` is called after each attempt to write, successful or not: the database has to
// be read again. The window deletes itself when it is closed.
class ScriptDialog final : public QDialog {
  Q_OBJECT

 public:
  ScriptDialog(AppContext& context, Prompts& prompts, PageHostFactory make_host, QWidget* parent,
               std::function<void()> written);
  ~ScriptDialog() override;

  void reject() override;
  void done(int result) override;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowTitle();
  void ShowScript();
  void ConnectEditor(ScriptEditor* editor, QPushButton* save, QLabel* shape);
  void Save(ScriptEditor* editor, QPushButton* save, QString RouterRecord::* field);
  bool Write(const QString& script, QString RouterRecord::* field);
  void ShowFindings();
  void ShowBench(bool shown);
  void InsertLines(const QStringList& lines);
  // The lines of the script on show as it was shipped; empty without one.
  QStringList ShippedLines() const;
  void AskToRestore();
  ScriptEditor* Editor() const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  PageHostFactory make_host_;
  std::function<void()> written_;
  const int router_id_;
  const std::optional<RouterRecord> shipped_;
  std::unique_ptr<Ui::ScriptDialog> ui_;
  ScriptBench* bench_ = nullptr;  // a child of this window, once it was wanted
  QList<ScriptFinding> findings_;
};

}  // namespace quayline
