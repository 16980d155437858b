// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/main/main_frame.h"
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
    context_ = std::make_unique<AppContext>(folder_.dir.path(), folder_.adapters, folder_.desktop);
    // Router images come from a closed port.
    context_->maker_site.base = u"http://127.0.0.1:9"_s;
    entries_ = std::make_unique<EntryRig>(*context_, prompts_);
    main_ = new MainFrame(*context_, prompts_, Windows());
    window_ = main_;
    is_ready_ = false;
    QObject::connect(&main_->Main(), &MainWindow::ready, main_, [this] { is_ready_ = true; });
    QObject::connect(main_, &MainFrame::closed, main_, [this] { ++closed_; });
  }
  void Begin() {
    Make();
    main_->Load();
    main_->show();
  }
  // Opens the window and runs the start to its end.
  void Start() {
    Begin();
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

  void ExpectStored(std::initializer_list<Named> settings) const {
    for (const Named& setting : settings) {
      EXPECT_EQ(Stored(setting.name), setting.text) << setting.name;
    }
  }

  MainFrame* main_ = nullptr;
  bool is_ready_ = false;
  int closed_ = 0;
  QList<QPointer<QWidget>> jobs_;
  QPointer<QDialog> dialog_;  // the last one that was opened
  std::function<void(int router_id)> choose_router_;
  std::function<void()> scripts_written_;

 private:
  WindowFactory Windows() {
    const EntryWindows* entries = &entries_->windows;
    return {.job_status =
                [this] {
                  jobs_.append(new QWidget);
                  jobs_.last()->setAttribute(Qt::WA_DeleteOnClose);
                  return jobs_.last();
                },
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

  std::unique_ptr<EntryRig> entries_;
};

}  // namespace quayline::testing
