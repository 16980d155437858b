// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/browser_set.h"

#include <algorithm>

namespace quayline {

BrowserSet::BrowserSet(PageHostFactory make_host, JobFlags& flags, int& active_index,
                       QObject* parent)
    : QObject(parent), flags_(flags), active_index_(active_index) {
  active_index_ = 0;
  Add(make_host(this));
}

BrowserSet::~BrowserSet() {
  // Popups first: they live in the profile and by the leave of the page that opened them.
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
  connect(host, &PageHost::navigationChanged, this, &BrowserSet::UpdateNavigation);
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
  connect(host, &PageHost::windowClosing, this, [this, host] { CloseLater(host); });
  Q_EMIT added(host);
}

void BrowserSet::CloseLater(PageHost* host) {
  if (host == members_.front().host) {
    return;  // the window's own browser stays, whatever its page asks for
  }
  std::erase_if(members_, [host](const Member& member) { return member.host == host; });
  host->disconnect(this);
  host->deleteLater();
  Show(0);
  UpdateNavigation();
}

void BrowserSet::Show(int index) {
  active_index_ = index;
  Q_EMIT activeChanged(Active());
}

void BrowserSet::UpdateNavigation() {
  const NavigationState before = navigation_;
  navigation_.busy = false;
  for (Member& member : members_) {
    const NavigationState state = member.host->Navigation();
    navigation_.starts += state.starts - std::exchange(member.starts_seen, state.starts);
    navigation_.busy = navigation_.busy || state.busy;
  }
  if (before.starts != navigation_.starts || before.busy != navigation_.busy) {
    if (navigation_.busy && holds_flags_) {
      flags_.SetPageLoaded(false);
    }
    Q_EMIT navigationChanged();
  }
}

}  // namespace quayline
