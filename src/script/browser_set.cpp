// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/browser_set.h"

#include <QTimer>

#include <algorithm>

#include "script/wait_limits.h"

namespace quayline {

BrowserSet::BrowserSet(const PageHostFactory& make_host, PageQuestions& questions, JobFlags& flags,
                       int& active_index, QObject* parent)
    : QObject(parent), flags_(flags), active_index_(active_index) {
  active_index_ = 0;
  Add(make_host(questions, this));
}

BrowserSet::~BrowserSet() {
  // Popups first: they share the process of the page that opened them.
  members_.insert(members_.end(), closing_.begin(), closing_.end());
  closing_.clear();
  while (!members_.empty()) {
    PageHost* host = members_.back().host;
    members_.pop_back();
    host->disconnect(this);
    delete host;
  }
}

PageHost* BrowserSet::Active() const { return At(active_index_); }

PageHost* BrowserSet::At(int index) const {
  const auto position = static_cast<size_t>(std::max(index, 0));
  return position < members_.size() ? members_[position].host : members_.front().host;
}

void BrowserSet::Add(PageHost* host) {
  host->setParent(this);
  members_.push_back({.host = host});
  connect(host, &PageHost::navigationChanged, this, [this, host] {
    UpdateNavigation();
    if (std::ranges::find(closing_, host, &Member::host) != closing_.end()) {
      DeleteWhenIdle(host);
    }
  });
  connect(host, &PageHost::documentComplete, this, [this] {
    if (!holds_flags_) {
      return;
    }
    flags_.SetPageErrorPending(false);
    if (!navigation_.busy) {
      flags_.SetPageLoaded(true);
    }
  });
  connect(host, &PageHost::newWindow, this, [this](PageHost* popup) {
    Add(popup);
    Show(static_cast<int>(members_.size()) - 1);
    UpdateNavigation();
  });
  connect(host, &PageHost::windowClosing, this, [this, host] { Close(host); });
  Q_EMIT added(host);
}

void BrowserSet::Close(PageHost* host) {
  const auto member = std::ranges::find(members_, host, &Member::host);
  if (member == members_.begin() || member == members_.end()) {
    return;  // the window's own browser stays, whatever its page asks for
  }
  closing_.push_back(*member);
  members_.erase(member);
  Show(0);
  UpdateNavigation();
  QTimer::singleShot(WaitLimits().save, host, [this, host] { Delete(host); });
  DeleteWhenIdle(host);
}

// The last requests of a page that closes itself may be a save.
void BrowserSet::DeleteWhenIdle(PageHost* host) {
  if (host->Navigation().busy) {
    return;  // asked again when the navigation ends
  }
  host->ReportIdle(PendingWork::kAny, [this, host](IdleReport) {
    if (!host->Navigation().busy) {
      Delete(host);
    }
  });
}

void BrowserSet::Delete(PageHost* host) {
  if (std::erase_if(closing_, [host](const Member& member) { return member.host == host; }) > 0) {
    host->disconnect(this);
    host->deleteLater();
    UpdateNavigation();
  }
}

bool BrowserSet::MaySave() const {
  return !closing_.empty() || std::ranges::any_of(members_, [](const Member& member) {
    return member.host->Navigation().after_action;
  });
}

void BrowserSet::ReportStop() {
  for (const Member& member : members_) {
    member.host->RunStopped();
  }
}

void BrowserSet::HandOver() {
  for (const Member& member : members_) {
    member.host->HandOver();
  }
}

void BrowserSet::StopNavigation() {
  for (const Member& member : members_) {
    member.host->StopNavigation();
  }
}

void BrowserSet::Show(int index) {
  active_index_ = index;
  Q_EMIT activeChanged(Active());
}

void BrowserSet::UpdateNavigation() {
  const NavigationState before = navigation_;
  navigation_.busy = !closing_.empty();
  std::ranges::for_each(members_, [this](Member& member) { Count(member); });
  std::ranges::for_each(closing_, [this](Member& member) { Count(member); });
  if (before.starts != navigation_.starts || before.busy != navigation_.busy) {
    if (navigation_.busy && holds_flags_) {
      flags_.SetPageLoaded(false);
    }
    Q_EMIT navigationChanged();
  }
}

void BrowserSet::Count(Member& member) {
  const NavigationState state = member.host->Navigation();
  navigation_.starts += state.starts - std::exchange(member.starts_seen, state.starts);
  navigation_.busy = navigation_.busy || state.busy;
}

}  // namespace quayline
