// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/lint_command.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "cli/arguments.h"
#include "test_main.h"

namespace quayline {
namespace {

TEST(LintCommand, TellsTheLinesAndWhetherTheyMatter) {
  QTemporaryDir folder;
  const QString name = folder.filePath(QStringLiteral("script.txt"));
  const struct {
    QByteArray script;
    int exit_status;
    QStringList lines;  // how the lines of the output begin, behind the file's name
  } cases[] = {
      {"", 0, {}},
      {"id: 7\nrouterpic: a.jpg\n\n[routercommands]\nnav(\"a\")\r\nset_name(\"a,\")", 0, {}},
      {"\xEF\xBB\xBFnav(\"a\")\r\ntimeout_last_only(\"5\")\r\n",
       0,
       {QStringLiteral(":2: warning: Whatever")}},
      {"note\n\nnav(\"a\n\xE4 nav\nset_nmae(\"%1\")",
       1,
       {QStringLiteral(":3: The argument"), QStringLiteral(":5: warning: There")}},
      {QByteArray((4 << 20) + 1, ' '), 2, {}},
  };
  for (const auto& c : cases) {
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(c.script);
    file.close();
    const LintReport report = LintFile(name);
    const QStringList lines = report.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    EXPECT_EQ(report.exit_status, c.exit_status) << report.output.toStdString();
    EXPECT_EQ(report.error.isEmpty(), c.exit_status != 2);
    ASSERT_EQ(lines.size(), c.lines.size()) << report.output.toStdString();
    for (qsizetype i = 0; i < lines.size(); ++i) {
      EXPECT_TRUE(lines[i].startsWith(name + c.lines[i])) << lines[i].toStdString();
    }
  }
  EXPECT_EQ(LintFile(folder.path()).exit_status, 2);
  EXPECT_EQ(LintFile(folder.filePath(QStringLiteral("gone"))).exit_status, 2);
}

TEST(LintCommand, TakesOneFile) {
  const QStringList words{QStringLiteral("lint"), QStringLiteral("a b"), QStringLiteral("c")};
  const auto one = ParseCliArguments(words.first(2));
  ASSERT_TRUE(one);
  EXPECT_EQ(one->command, CliCommand::kLint);
  EXPECT_EQ(one->lint_file, QStringLiteral("a b"));
  EXPECT_FALSE(ParseCliArguments(words.first(1)));
  EXPECT_FALSE(ParseCliArguments(words));
}

}  // namespace
}  // namespace quayline
