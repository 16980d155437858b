// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/script_runner.h"

namespace quayline {

// Brings the user to the router's page of forwarded ports: one pass of the router's view script, in
// a browser that stays open afterwards. It is the logic of the page view window.
//
// A popup is shown in place of the page; the script stays on the page. A page's error ends the
// script only: the user goes on working with the page.
class PageViewRunner final : public ScriptRunner {
  Q_OBJECT

 public:
  PageViewRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
                 QObject* parent = nullptr);
  ~PageViewRunner() override;

  // Makes the browser and forgets how the run before ended.
  void Open();
  // Begins the pass. The address, the login and the script are read now.
  void Run();

  // How the pass ended; nothing while it has not.
  std::optional<RunEnd> End() const { return end_; }

 protected:
  void CountError() override;

 private:
  Task<> RunViewScript();

  std::optional<RunEnd> end_;
};

}  // namespace quayline
