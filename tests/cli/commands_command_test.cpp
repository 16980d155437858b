// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/commands_command.h"

#include <QFile>

#include <gtest/gtest.h>

#include "script/command_table.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(CommandsCommand, DescribesOneCommandOrAll) {
  const struct {
    const char* name;
    QStringList parts;
  } cases[] = {
      {"Set_IP1",
       {u"set_ip1(\"field,position,only if empty\")\n"_s, u"\n  only if empty\n"_s,
        u"that of an earlier line is used"_s, u"Without it, false."_s}},
      {"timeout_last_only", {u"every entry of the job but the first"_s, u"Whatever its name"_s}},
      {"choose_item", {u"choose_item(\"list,text\")"_s}},
      {"", {u"\nset_name(\"field,position\")\n"_s, u"\nrun_javascript(\"code\")\n"_s}},
  };
  for (const auto& c : cases) {
    const auto text = DescribeCommands({.name = QString::fromLatin1(c.name)});
    ASSERT_TRUE(text) << c.name;
    for (const QString& part : c.parts) {
      EXPECT_TRUE(text->contains(part)) << part.toStdString() << " in " << text->toStdString();
    }
  }
  const auto unknown = DescribeCommands({.name = u"set_nmae"_s});
  ASSERT_FALSE(unknown);
  EXPECT_TRUE(unknown.error().contains(u"\"set_name\""_s));
}

TEST(CommandsCommand, ThePageInTheTreeIsCurrent) {
  QFile file(QStringLiteral(QUAYLINE_SOURCE_DIR "/docs/script-commands.md"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QStringList page = DescribeCommands({.as_markdown = true}).value_or(QString()).split(u'\n');
  const QStringList kept = QString::fromUtf8(file.readAll()).split(u'\n');
  for (qsizetype i = 0; i < std::max(page.size(), kept.size()); ++i) {
    ASSERT_EQ(kept.value(i).toStdString(), page.value(i).toStdString())
        << "line " << i + 1 << "; write it anew: quayline-cli commands --markdown";
  }
  for (const CommandRow& row : AllCommands()) {
    EXPECT_FALSE(kept.filter(CommandName(row)).isEmpty()) << row.name;
  }
}

}  // namespace
}  // namespace quayline
