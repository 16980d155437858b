// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_desktop.h"

#include <QDesktopServices>

namespace quayline {

bool LinuxDesktop::OpenInBrowser(const QUrl& page) {
  // Addresses come out of databases and settings: what is not a web page could start any program.
  const bool is_web_page =
      page.scheme() == QStringLiteral("http") || page.scheme() == QStringLiteral("https");
  return is_web_page && !page.host().isEmpty() && QDesktopServices::openUrl(page);
}

}  // namespace quayline
