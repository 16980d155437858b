// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/list_history.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {
namespace {

// A list whose rows have the letters as their names.
QList<PortEntry> List(const QString& names) {
  QList<PortEntry> entries;
  for (const QChar name : names) {
    entries.append({.app_name = name});
  }
  return entries;
}

QString Names(const std::optional<QList<PortEntry>>& entries) {
  QString names = entries ? QString() : QStringLiteral("nothing");
  for (const PortEntry& entry : entries.value_or(QList<PortEntry>())) {
    names += entry.app_name;
  }
  return names;
}

TEST(ListHistory, EachStepGoesBackAndOnAgainAndANewChangeEndsTheRedoing) {
  ListHistory history;
  history.Begin(List(QStringLiteral("a")));
  EXPECT_EQ(Names(history.Undo()), QStringLiteral("nothing"));
  history.Note(List(QStringLiteral("ab")));
  history.Note(List(QStringLiteral("ab")));
  history.Note({});
  EXPECT_EQ(Names(history.Undo()), QStringLiteral("ab"));
  history.Note(List(QStringLiteral("ab")));  // as the list says when it shows what was undone
  EXPECT_EQ(Names(history.Undo()), QStringLiteral("a"));
  EXPECT_FALSE(history.CanUndo());
  EXPECT_EQ(Names(history.Redo()), QStringLiteral("ab"));
  EXPECT_EQ(Names(history.Redo()), QString());
  EXPECT_FALSE(history.CanRedo());
  history.Undo();
  history.Note(List(QStringLiteral("abc")));
  EXPECT_FALSE(history.CanRedo());
  EXPECT_EQ(Names(history.Undo()), QStringLiteral("ab"));
}

TEST(ListHistory, OldStepsAreForgottenFirst) {
  ListHistory history;
  const auto steps = static_cast<int>(ListHistory::kMaxSteps);
  for (int length = 1; length <= steps + 3; ++length) {
    history.Note(List(QString(length, QLatin1Char('x'))));
  }
  std::optional<QList<PortEntry>> oldest;
  int undone = 0;
  while (history.CanUndo()) {
    oldest = history.Undo();
    ++undone;
  }
  EXPECT_EQ(undone, steps);
  EXPECT_EQ(oldest->size(), 3);
}

}  // namespace
}  // namespace quayline::testing
