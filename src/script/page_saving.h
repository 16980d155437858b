// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>

#include "async/task.h"
#include "script/page_host.h"
#include "script/saved_page.h"

namespace quayline {

// What became of a page that was to be saved.
struct SavingReport {
  bool is_written = false;
  QStringList missing;  // addresses of files that the page uses and that are not in the folder
};

// Saves the page that `host` shows into `folder`, as WriteSavedPage() does, with the styles,
// pictures and fonts that the router itself has for it. A page is saved as it is shown, and must
// not be built a second time when it is opened: so its scripts are saved to be read, with ".txt"
// added to their names. Nothing is sent but requests for these files.
Task<SavingReport> SavePage(QPointer<PageHost> host, QString folder, PageSecrets secrets);

}  // namespace quayline
