// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "entry_doubles.h"
#include "test_main.h"
#include "ui/main/frm_main2.h"
#include "window_doubles.h"

namespace quayline::testing {

// The main window on a program folder of its own.
class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    folder_.WriteDatabases({RouterRow(3, QStringLiteral("Alpha 1"), QStringLiteral("admin")),
                            RouterRow(7, QStringLiteral("Beta 2"), QStringLiteral("root"))});
  }

  // Opens the window and runs the start to its end.
  void Start() {
    Make();
    bool is_ready = false;
    QObject::connect(&window_->Main(), &FrmMain::ready, window_.get(), [&] { is_ready = true; });
    window_->Load();
    window_->show();
    ASSERT_TRUE(RunUntil([&] { return is_ready; }));
  }

  void Make() {
    window_.reset();
    context_ = std::make_unique<AppContext>(folder_.dir.path(), folder_.adapters, folder_.desktop);
    // Pictures come from a port where nobody listens.
    context_->maker_site.base = QStringLiteral("http://127.0.0.1:9");
    entries_ = std::make_unique<EntryRig>(*context_, prompts_);
    window_ = std::make_unique<FrmMain2>(*context_, prompts_, Windows());
  }

  WindowFactory Windows() {
    const EntryWindows* entries = &entries_->windows;
    return {.job_status = [this] { return MakeJobWindow(); },
            .add_new = std::bind_front(&EntryWindows::AddNew, entries),
            .edit = std::bind_front(&EntryWindows::Edit, entries),
            .network_list = std::bind_front(&EntryWindows::NetworkList, entries),
            .view_page = [this](QWidget* parent) { return MakeDialog(parent); },
            .router_list =
                [this](QWidget* parent, auto chosen) {
                  choose_router_ = std::move(chosen);
                  return MakeDialog(parent);
                },
            .view_scripts =
                [this](QWidget* parent, auto written) {
                  scripts_written_ = std::move(written);
                  return MakeDialog(parent);
                }};
  }

  QDialog* MakeDialog(QWidget* parent) {
    dialog_ = new QDialog(parent);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    return dialog_;
  }

  QWidget* MakeJobWindow() {
    auto* job = new QWidget;
    job->setAttribute(Qt::WA_DeleteOnClose);
    jobs_.append(job);
    return job;
  }

  template <typename T>
  T* Find(const char* name) const {
    T* control = window_->findChild<T*>(QLatin1String(name));
    EXPECT_NE(control, nullptr) << name;
    return control;
  }
  QString TextOf(const char* label) const { return Find<QLabel>(label)->text(); }
  QString Stored(const char* key) const { return context_->settings.Value(key); }

  ProgramFolder folder_;
  FakePrompts prompts_;
  std::unique_ptr<AppContext> context_;
  std::unique_ptr<EntryRig> entries_;
  std::unique_ptr<FrmMain2> window_;
  QList<QPointer<QWidget>> jobs_;
  QPointer<QDialog> dialog_;  // the last one that was opened
  std::function<void(int router_id)> choose_router_;
  std::function<void()> scripts_written_;
};

}  // namespace quayline::testing
