// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/adapters.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

// Adapters as "address mask gateway; ...".
QList<Adapter> Of(const char* text) {
  QList<Adapter> adapters;
  for (const QString& each : QString::fromLatin1(text).split(u';', Qt::SkipEmptyParts)) {
    const QStringList words = each.split(u' ', Qt::SkipEmptyParts);
    adapters.append({.address = words[0], .mask = words[1], .gateway = words[2]});
  }
  return adapters;
}

#define UNPLUGGED "0.0.0.0 0.0.0.0 0.0.0.0;"
#define HOME "192.168.1.7 255.255.255.0 192.168.1.1;"
#define OFFICE "10.0.0.7 255.0.0.0 10.0.0.1;"

TEST(DefaultGateway, IsThatOfTheAdapterInUse) {
  const struct {
    const char* fault;
    const char* adapters;
    qsizetype preselected;
    const char* gateway;
  } cases[] = {
      {"no adapter at all", "", -1, "0.0.0.0"},
      {"an unplugged first adapter hides the second", UNPLUGGED HOME, 1, "192.168.1.1"},
      {"the last of two good ones wins", OFFICE HOME, 0, "10.0.0.1"},
      {"a digit further behind counts", "100.0.0.2 255.0.0.0 100.0.0.1", 0, "100.0.0.1"},
      {"an adapter without gateway is taken", "172.17.0.1 255.255.0.0 0.0.0.0;" OFFICE, 1,
       "10.0.0.1"},
      {"an adapter without mask is taken", "10.0.0.2 0.0.0.0 10.0.0.9;" HOME, 1, "192.168.1.1"},
      {"the first instead of the last when none is in use", UNPLUGGED "0.0.0.0 0.0.0.0 10.9.9.9", 1,
       "10.9.9.9"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PreselectedAdapter(Of(c.adapters)), c.preselected) << c.fault;
    EXPECT_EQ(DefaultGateway(Of(c.adapters)), QLatin1String(c.gateway)) << c.fault;
  }
}

TEST(ForwardableAddresses, AreAllButTwo) {
  const auto list = [](const char* addresses) {
    return QString::fromLatin1(addresses).split(u' ');
  };
  EXPECT_EQ(ForwardableAddresses(list("127.0.0.1 10.0.0.1 0.0.0.0 127.0.0.11 1.2.3.4")),
            list("10.0.0.1 127.0.0.11 1.2.3.4"));
}

}  // namespace
}  // namespace quayline
