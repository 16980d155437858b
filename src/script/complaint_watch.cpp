// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/complaint_watch.h"

#include <utility>

namespace quayline {

void ComplaintWatch::Take(const QStringList& shown, quint64 page, int inputs) {
  if (inputs > inputs_) {
    known_ += std::exchange(open_, {});
  }
  const bool has_arrived = page != page_;
  if (has_arrived) {
    found_ += std::exchange(open_, {});
  }
  QStringList& news = !has_arrived ? found_ : inputs > 0 ? open_ : known_;
  for (const QString& text : shown) {
    if (!known_.contains(text) && !found_.contains(text) && !open_.contains(text)) {
      news.append(text);
    }
  }
  page_ = page;
  inputs_ = inputs;
}

}  // namespace quayline
