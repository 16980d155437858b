// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/lint_command.h"

#include <gtest/gtest.h>

#include "cli/arguments.h"
#include "core/files.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(LintCommand, TellsTheLinesAndWhetherTheyMatter) {
  QTemporaryDir folder;
  const QString name = folder.filePath(u"script.txt"_s);
  const struct {
    QByteArray script;
    int exit_status;
    QStringList lines = {};  // how the lines of the output begin, after the file's name
  } cases[] = {
      {"", 0},
      {"id: 7\nrouterpic: a.jpg\n\n[routercommands]\nnav(\"a\")\r\nset_name(\"a,\")",
       1,
       {u":6: No line below clicks"_s}},
      {"id: 7\n[routercommands]\nnav(\"a\")\n\n[routerportpage]\nset_ip(\"a,\")\n",
       1,
       {u":6: This script runs without"_s, u":6: The script opens no page."_s,
        u":6: No line below"_s}},
      {"\xEF\xBB\xBFnav(\"a\")\r\ntimeout_last_only(\"5\")\r\n", 0, {u":2: warning: Whatever"_s}},
      {"note\n\nnav(\"a\n\xE4 nav\nset_nmae(\"%1\")",
       1,
       {u":3: The argument"_s, u":5: warning: There"_s}},
      {QByteArray((4 << 20) + 1, ' '), 2},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(testing::WriteBytes(name, c.script));
    const LintReport report = LintFile(name);
    SCOPED_TRACE(qPrintable(report.output));
    EXPECT_EQ(report.exit_status, c.exit_status);
    EXPECT_EQ(report.error.isEmpty(), c.exit_status != 2);
    const QStringList lines = report.output.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), c.lines.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
      EXPECT_TRUE(lines[i].startsWith(name + c.lines[i])) << qPrintable(c.lines[i]);
    }
  }
  EXPECT_EQ(LintFile(folder.path()).exit_status, 2);
  EXPECT_EQ(LintFile(folder.filePath(u"gone"_s)).exit_status, 2);
}

}  // namespace
}  // namespace quayline
