// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

namespace quayline {

// What the program asks of the user's desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;

  // Opens a page in the user's own browser. False if there is no browser.
  virtual bool OpenInBrowser(const QUrl& page) = 0;
};

}  // namespace quayline
