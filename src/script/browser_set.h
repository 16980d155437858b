// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <vector>

#include "core/job_flags.h"
#include "script/page_host.h"

namespace quayline {

// The hosted browsers of one window: the window's own, and those that the page's popups add. Keeps
// the flags of the page that a run waits for, and knows which browser is shown. A popup takes the
// place of the browser before it until it closes.
class BrowserSet final : public QObject {
  Q_OBJECT

 public:
  // `questions` answers what the pages ask, and outlives the set. `active_index` is where the
  // number of the shown browser is kept.
  BrowserSet(const PageHostFactory& make_host, PageQuestions& questions, JobFlags& flags,
             int& active_index, QObject* parent = nullptr);
  ~BrowserSet() override;

  PageHost* Active() const;
  // The browser with the window's own number; the script of a page view stays on number 0.
  PageHost* At(int index) const;

  // Stops updating the flags of the page: this window's run has ended, and the next one owns them.
  void LetFlagsGo() { holds_flags_ = false; }
  // Updates them again, for a run that begins: from now on they describe this window's pages.
  void TakeFlags() {
    holds_flags_ = true;
    flags_.SetPageLoaded(!navigation_.busy);
  }
  bool HoldsFlags() const { return holds_flags_; }

  // Over all browsers of the set: a save may begin in one and end in another. A popup that closes
  // itself is kept, and busy, until its requests are answered.
  NavigationState Navigation() const { return navigation_; }
  // Whether anything that the pages send now may be a save.
  bool MaySave() const;
  // The user stopped the run: ends what is no save.
  void ReportStop();
  // From now on the user acts on the pages, as a person does on any page.
  void HandOver();
  // Ends what the pages load.
  void StopNavigation();

 Q_SIGNALS:
  void navigationChanged();
  // Another browser is shown.
  void activeChanged(quayline::PageHost* host);
  // A browser joined the set, so that its other signals can be heard.
  void added(quayline::PageHost* host);

 private:
  void Add(PageHost* host);
  void Close(PageHost* host);
  void DeleteWhenIdle(PageHost* host);
  void Delete(PageHost* host);
  void Show(int index);
  void UpdateNavigation();

  struct Member {
    PageHost* host = nullptr;
    quint64 starts_seen = 0;
  };
  void Count(Member& member);

  JobFlags& flags_;
  int& active_index_;
  bool holds_flags_ = true;
  std::vector<Member> members_;
  std::vector<Member> closing_;  // not shown any more, and kept until they are idle
  NavigationState navigation_;
};

}  // namespace quayline
