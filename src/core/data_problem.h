// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "i18n/sentence.h"

namespace quayline {

// Something that is wrong in the text files, and where.
struct DataProblem {
  QString file;
  int line =
      1;  // counted from 1; a problem of the whole file or router is reported at its first line
  Sentence sentence;
  bool is_warning = false;  // a hint that does not refuse the data
};

using Problems = QList<DataProblem>;

// Whether the data must be refused.
bool HoldErrors(const Problems& problems);

// "file:line: sentence" lines in English, in the order of files and lines. The sentence of a
// warning begins with "warning: ".
QString FormatProblems(Problems problems);

}  // namespace quayline
