// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline {

// Command lines that register the components of a browser, or of a database engine, again, on a
// system that has "regsvr32".
QStringList BrowserRepairCommands();
QStringList DatabaseRepairCommands();

// The folders of what programs share.
struct CommonFolders {
  QString of_this_system;
  QString of_32_bits;
};

// The line with its folder in place of "%CommonProgramFiles%" or "%CommonProgramFiles(x86)%" after
// its first quote. Other lines stay as they are.
QString WithCommonFolders(QString line, const CommonFolders& folders);

}  // namespace quayline
