// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/near_name.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "script/command_table.h"

namespace quayline {

namespace {

// How many single edits make one text the other: a letter added, removed or replaced, or two
// neighbours exchanged.
int EditDistance(QStringView from, QStringView to) {
  const auto width = static_cast<size_t>(to.size()) + 1;
  std::vector<int> before_last(width);
  std::vector<int> last(width);
  std::vector<int> row(width);
  std::iota(last.begin(), last.end(), 0);
  for (qsizetype i = 1; i <= from.size(); ++i) {
    row[0] = static_cast<int>(i);
    for (qsizetype j = 1; j <= to.size(); ++j) {
      const auto at = static_cast<size_t>(j);
      const int replaced = last[at - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[at] = std::min({last[at] + 1, row[at - 1] + 1, replaced});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        row[at] = std::min(row[at], before_last[at - 2] + 1);
      }
    }
    before_last.swap(last);
    last.swap(row);
  }
  return last.back();
}

}  // namespace

QString NearestCommandName(const QString& name, bool is_call) {
  constexpr qsizetype kCallShare = 3;
  constexpr qsizetype kCommentShare = 5;
  const qsizetype most = name.size() / (is_call ? kCallShare : kCommentShare);
  QString nearest;
  qsizetype fewest = most + 1;
  for (const CommandRow& row : AllCommands()) {
    const auto size = static_cast<qsizetype>(row.name.size());
    if (std::abs(size - name.size()) >= fewest) {
      continue;  // each letter more is an edit
    }
    const QString candidate = CommandName(row);
    if (const int edits = EditDistance(name, candidate); edits < fewest) {
      fewest = edits;
      nearest = candidate;
    }
  }
  return nearest;
}

}  // namespace quayline
