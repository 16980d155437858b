// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/host_names.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

TEST(HostNames, WhatARouterCanHoldOfAResolversAnswer) {
  const std::pair<const char*, const char*> cases[] = {
      {"frontdesk.lan.example", "frontdesk"},
      {"FrontDesk", "FrontDesk"},
      {"192.168.1.100", ""},  // "192" is no name
      {"::1", ""},
      {"", ""},
      {".lan", ""},
      {"a|b(c)\r\nd.lan", "abcd"},
  };
  for (const auto& [answer, name] : cases) {
    EXPECT_EQ(ShortHostName(QString::fromLatin1(answer)), QLatin1String(name)) << answer;
  }
  EXPECT_EQ(ShortHostName(QString(1000, QLatin1Char('x'))).size(), 256);
}

Task<> Ask(HostNames& names, QString address, QString* name) {
  *name = co_await names.OfAddress(address);
}

TEST(HostNames, OfThisComputerAndOfNoAddress) {
  SystemHostNames names;
  const std::pair<const char*, const char*> cases[] = {
      {" 127.0.0.1 ", "localhost"}, {"", ""}, {"127.1", ""}, {"localhost", ""}, {"127.0.0.", ""}};
  for (const auto& [address, expected] : cases) {
    QString name = QStringLiteral("not asked");
    ASSERT_TRUE(testing::RunTask(Ask(names, QString::fromLatin1(address), &name)));
    EXPECT_EQ(name, QLatin1String(expected)) << address;
  }
}

TEST(HostNames, AQuestionThatIsGivenUpIsNotAnswered) {
  SystemHostNames names;
  QString name;
  {
    Flow flow;
    flow.Start(Ask(names, QStringLiteral("127.0.0.1"), &name));
  }
  EXPECT_FALSE(testing::RunUntil([&] { return !name.isEmpty(); }, std::chrono::milliseconds(200)));
}

}  // namespace
}  // namespace quayline
