// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>
#include <QTimer>

#include "core/settings.h"
#include "ui/toolkit/controls.h"

namespace quayline {

// Remembers the column widths that the user gave to a list, from one run of the program to the
// next. Columns that were never touched size themselves. Belongs to the list's window.
class ListColumns final : public QObject {
  Q_OBJECT

 public:
  // Gives `list`, which has its model, the widths of the last run.
  ListColumns(HintedList& list, Settings& settings);

  // Stores a width that was given a moment ago; for the end of the program.
  void Flush();

 private:
  void Store();

  Settings& settings_;
  QMap<int, int> widths_;  // by column
  QTimer timer_;           // a drag gives dozens of widths, of which the last one counts
};

}  // namespace quayline
