// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QLineEdit>

#include "ui/main/main_frame.h"
#include "ui/toolkit/window_language.h"
#include "window_fixture.h"

namespace quayline::testing {

// The main window. Windows of other folders are empty, but for those of the entries.
class MainWindowTest : public WindowTest {
 protected:
  MainWindowTest() {
    folder_.WriteDatabases(
        {RouterRow(3, u"Alpha 1"_s, u"admin"_s), RouterRow(7, u"Beta 2"_s, u"root"_s)});
  }

  void Make() {
    delete window_.data();
    language_.reset();
    context_ = std::make_unique<AppContext>(folder_.dir.path(), folder_.adapters, folder_.desktop);
    context_->maker_site.base = maker_site_;
    if (!wants_guide_ && !context_->settings.IsSet(setting::kShowGettingStarted)) {
      context_->settings.SetValue(setting::kShowGettingStarted, u"1"_s);
    }
    context_->translator.Choose(context_->settings.Value(setting::kLanguage));
    language_ = std::make_unique<WindowLanguage>(*qApp, context_->translator);
    windows_ = std::make_unique<FakeWindows>(*context_, prompts_);
    main_ = new MainFrame(*context_, prompts_, *windows_);
    window_ = main_;
    is_ready_ = false;
    QObject::connect(&main_->Main(), &MainWindow::ready, main_, [this] { is_ready_ = true; });
    QObject::connect(main_, &MainFrame::closed, main_, [this] { ++closed_; });
  }
  void Begin() {
    Make();
    Show();
  }
  void Show() {
    main_->Load();
    main_->show();
  }
  // Opens the window and runs the start to its end.
  void Start() {
    Begin();
    AwaitReady();
  }
  void AwaitReady() {
    ASSERT_TRUE(RunUntil([this] { return is_ready_; }));
  }
  void Start(const QByteArray& settings) {
    WriteSettings(settings);
    Start();
  }
  void WriteSettings(const QByteArray& lines) {
    delete window_.data();  // may write its own
    folder_.WriteFile("settings.ini", "[main]\r\n" + lines);
  }

  // As the user does: the window tells his changes apart from its own. The text replaces the one
  // before, as if it had been pasted.
  void Type(const char* field, const char* text) {
    QLineEdit* edit = FieldOf(field);
    edit->selectAll();
    *text == '\0' ? edit->del() : edit->insert(QString::fromUtf8(text));
  }
  // Ends the editing of a field, as leaving it does.
  void Leave(const char* field) { Q_EMIT FieldOf(field)->editingFinished(); }
  QLineEdit* FieldOf(const char* name) const {
    const auto* box = qobject_cast<QComboBox*>(Find(name));
    return box != nullptr ? box->lineEdit() : Find<QLineEdit>(name);
  }

  QString maker_site_ = u"http://127.0.0.1:9"_s;  // where no server listens
  std::unique_ptr<WindowLanguage> language_;
  std::unique_ptr<FakeWindows> windows_;
  MainFrame* main_ = nullptr;
  bool is_ready_ = false;
  bool wants_guide_ = false;  // at the start, unless the settings say otherwise
  int closed_ = 0;
};

}  // namespace quayline::testing
