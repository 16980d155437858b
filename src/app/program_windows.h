// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/app_context.h"
#include "script/page_host.h"
#include "ui/entries/entry_windows.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// The windows of the program, for the main window, which does not know their folders.
class ProgramWindows final : public WindowFactory {
 public:
  // What is referred to outlives it.
  ProgramWindows(AppContext& context, Prompts& prompts, const EntryWindows& entries)
      : context_(context), prompts_(prompts), entries_(entries) {}

  QWidget* Job() override;
  QDialog* AddEntry(QWidget* parent, std::function<void()> changed) override;
  QDialog* EditEntry(QWidget* parent, int row, std::function<void()> changed) override;
  QDialog* Adapters(QWidget* parent, std::function<void(const QString&)> chosen) override;
  QDialog* PageView(QWidget* parent) override;
  QDialog* RouterList(QWidget* parent, std::function<void(int router_id)> chosen) override;
  QDialog* Scripts(QWidget* parent, std::function<void()> written) override;

 private:
  PageHostFactory Hosts() const;

  AppContext& context_;
  Prompts& prompts_;
  const EntryWindows& entries_;
};

}  // namespace quayline
