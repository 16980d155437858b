// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/adapters.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

Adapter Of(const char* address, const char* mask, const char* gateway) {
  return {.description = QStringLiteral("a"),
          .index = 1,
          .address = QString::fromLatin1(address),
          .mask = QString::fromLatin1(mask),
          .gateway = QString::fromLatin1(gateway)};
}

TEST(DefaultGateway, IsThatOfTheAdapterInUse) {
  const Adapter unplugged = Of("0.0.0.0", "0.0.0.0", "0.0.0.0");
  const Adapter home = Of("192.168.1.7", "255.255.255.0", "192.168.1.1");
  const Adapter office = Of("10.0.0.7", "255.0.0.0", "10.0.0.1");
  const struct {
    const char* fault = "";
    QList<Adapter> adapters;
    qsizetype preselected = 0;
    const char* gateway = "";
  } cases[] = {
      {"no adapter at all", {}, -1, "0.0.0.0"},
      {"an unplugged first adapter hides the second", {unplugged, home}, 1, "192.168.1.1"},
      {"the last of two good ones wins", {office, home}, 0, "10.0.0.1"},
      {"a digit further behind counts",
       {Of("100.0.0.2", "255.0.0.0", "100.0.0.1")},
       0,
       "100.0.0.1"},
      {"an adapter without gateway is taken",
       {Of("172.17.0.1", "255.255.0.0", "0.0.0.0"), office},
       1,
       "10.0.0.1"},
      {"an adapter without mask is taken",
       {Of("10.0.0.2", "0.0.0.0", "10.0.0.9"), home},
       1,
       "192.168.1.1"},
      {"the first instead of the last when none is in use",
       {unplugged, Of("0.0.0.0", "0.0.0.0", "10.9.9.9")},
       1,
       "10.9.9.9"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PreselectedAdapter(c.adapters), c.preselected) << c.fault;
    EXPECT_EQ(DefaultGateway(c.adapters), QLatin1String(c.gateway)) << c.fault;
  }
}

TEST(ForwardableAddresses, AreAllButTwo) {
  const auto list = [](const char* addresses) {
    return QString::fromLatin1(addresses).split(QLatin1Char(' '));
  };
  EXPECT_EQ(ForwardableAddresses(list("127.0.0.1 10.0.0.1 0.0.0.0 127.0.0.11 1.2.3.4")),
            list("10.0.0.1 127.0.0.11 1.2.3.4"));
  EXPECT_TRUE(ForwardableAddresses(list("127.0.0.1")).isEmpty());
}

}  // namespace
}  // namespace quayline
